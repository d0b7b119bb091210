// A broken effect library: its createScene makes no effect.
namespace vi {
class Effect;
}

extern "C" __attribute__((visibility("default"))) vi::Effect* createScene() {
    return nullptr;
}
