#pragma once
/// Marks what liboviapi.so exports to its users; everything else is hidden.
#define OV_ENGINE_API __attribute__((visibility("default")))
