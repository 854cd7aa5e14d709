#pragma once
/// Marks what liboviapi.so shows to its users; everything else is hidden.
#define OV_ENGINE_API __attribute__((visibility("default")))
