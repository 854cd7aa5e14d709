#pragma once

namespace GenApi_3_0_ORVANE {

/// The forms in which the parts of a description print themselves.
enum EToStringStyle_t {
    tssText = 0,          ///< dump for a person: property, node, map
    tssXmlDocument = 1,   ///< whole XML document: map
    tssXmlElement = 2,    ///< one XML element: property
    tssXmlStartTag = 3,   ///< opening tag with attributes: node
    tssXmlEndTag = 4,     ///< closing tag: node
    tssXmlAttribute = 5,  ///< name="value": property
    tssValue = 6          ///< the value alone: property
};

}  // namespace GenApi_3_0_ORVANE
