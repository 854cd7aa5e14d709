// Loads as a library and is no producer: no call is there.

extern "C" __attribute__((visibility("default"))) int OvTest_NoProducer() {
    return 0;
}
