#pragma once

/// Marks a function that runs for each frame. The linker puts these side by side: to a thread that
/// wakes for a frame now and then the processor's caches are cold, and every page that it runs
/// through costs another walk through the page tables.
#define OV_EACH_FRAME __attribute__((hot))
