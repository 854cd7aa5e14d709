#pragma once
/// The numbers by which cameras name the pixel formats that this system knows.

#include <cstdint>

namespace GenTL {

/// The second byte from the top is the number of bits that a pixel takes. A suffix "p"
/// packs samples bit by bit, "Packed" two of them into three bytes.
enum class PixelFormatCode : uint32_t {
    Mono8 = 0x01080001,
    Mono10 = 0x01100003,
    Mono10Packed = 0x010C0004,
    Mono12 = 0x01100005,
    Mono12Packed = 0x010C0006,
    Mono16 = 0x01100007,
    Mono10p = 0x010A0046,
    Mono12p = 0x010C0047,
    BayerGR8 = 0x01080008,
    BayerRG8 = 0x01080009,
    BayerGB8 = 0x0108000A,
    BayerBG8 = 0x0108000B,
    BayerGR10 = 0x0110000C,
    BayerRG10 = 0x0110000D,
    BayerGB10 = 0x0110000E,
    BayerBG10 = 0x0110000F,
    BayerGR12 = 0x01100010,
    BayerRG12 = 0x01100011,
    BayerGB12 = 0x01100012,
    BayerBG12 = 0x01100013,
    BayerRG10Packed = 0x010C0027,
    BayerRG12Packed = 0x010C002B,
    BayerGR16 = 0x0110002E,
    BayerRG16 = 0x0110002F,
    BayerGB16 = 0x01100030,
    BayerBG16 = 0x01100031,
    BayerBG12p = 0x010C0053,
    BayerGB12p = 0x010C0055,
    BayerGR12p = 0x010C0057,
    BayerRG10p = 0x010A0058,
    BayerRG12p = 0x010C0059,
    RGB8 = 0x02180014,
    BGR8 = 0x02180015,
    RGBa8 = 0x02200016,
    RGB10 = 0x02300018,
    RGB12 = 0x0230001A,
    RGB16 = 0x02300033,
};

}  // namespace GenTL
