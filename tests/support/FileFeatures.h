#pragma once
/// Features of files in a camera, which is memory alone.

#include <initializer_list>
#include <string>

#include "support/DescriptionXml.h"

/// Features of files, whose operations succeed and move four bytes until "FileOperationStatus"
/// and "FileOperationResult" are set to something else.
inline std::string FileFeatures() {
    using namespace DescriptionXml;  // NOLINT(google-build-using-namespace)
    std::string features;
    const auto enumeration = [&](const std::string& name, std::initializer_list<const char*> all) {
        std::string entries;
        int value = 0;
        for (const char* const entry : all) {
            entries += NodeXml("EnumEntry", entry, Element("Value", std::to_string(value++)));
        }
        features += NodeXml("Enumeration", name, entries + "<Value>0</Value>");
    };
    enumeration("FileSelector", {"UserSet"});
    enumeration("FileOperationSelector", {"Open", "Close", "Read", "Write", "Delete"});
    enumeration("FileOpenMode", {"Read", "Write"});
    enumeration("FileOperationStatus", {"Success", "Failure"});
    features += IntegerXml("FileAccessOffset") + IntegerXml("FileAccessLength");
    features += IntegerXml("FileOperationResult", "", "<Value>4</Value>");
    features += RegXml{.name = "FileExecuteReg", .address = 0x9000, .access = "WO"}();
    features += NodeXml("Command", "FileOperationExecute",
                        "<pValue>FileExecuteReg</pValue><CommandValue>1</CommandValue>");
    features += NodeXml("Register", "FileAccessBuffer",
                        At(0x9100) + "<Length>16</Length><AccessMode>RW</AccessMode>" +
                            "<pPort>Device</pPort><Cachable>NoCache</Cachable>");
    return features;
}
