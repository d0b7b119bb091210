#pragma once

// The binary contract with effect libraries: field offsets, sizes, alignments, where a class's
// data ends and the vtable slot of each virtual operation, as worked out by hand for the two
// Android ABIs (arm64-v8a is LP64 like x86-64; armeabi-v7a is ILP32). The layout files that
// use this are compiled with -fno-access-control, so private fields can be named, and also
// with the ARM cross compilers, so the 32-bit figures are checked too.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <map>
#include <string>

namespace qam::layout {

constexpr bool kLP64 = sizeof(void*) == 8;

// The figure for the ABI being compiled.
constexpr std::size_t abi(std::size_t lp64, std::size_t ilp32) {
    return kLP64 ? lp64 : ilp32;
}

// Growable arrays are three pointers in every C++ library; strings and ordered maps are the
// C++ library's own size (libstdc++ here, libc++ on Android), so figures after one add it.
constexpr std::size_t kVector = abi(24, 12);
constexpr std::size_t kString = sizeof(std::string);
constexpr std::size_t kMap = sizeof(std::map<int, int>);

// One field: where it is, and where the figures for the two ABIs put it.
struct At {
    std::size_t actual;
    std::size_t lp64;
    std::size_t ilp32;
};

// The index of the first field off its place; -1 when every one is where its figures say.
constexpr int firstMisplaced(std::initializer_list<At> fields) {
    int index = 0;
    for (const At& field : fields) {
        if (field.actual != abi(field.lp64, field.ilp32)) {
            return index;
        }
        ++index;
    }
    return -1;
}

// A derived class's first field: it starts where the base's data ends, in its tail padding.
template <typename Base>
struct Tail : Base {
    char mFirst;
};

// The slot of a virtual operation, 0 for the first entry after the vtable's address point
// (a virtual destructor takes two). -1 when `pmf` is not virtual.
template <typename Pmf>
long vtableSlot(Pmf pmf) {
    struct {
        std::uintptr_t ptr;
        std::ptrdiff_t adj;
    } rep;
    static_assert(sizeof rep == sizeof pmf, "Itanium member-function pointer");
    std::memcpy(&rep, &pmf, sizeof rep);
#if defined(__arm__) || defined(__aarch64__)
    // ARM's C++ ABI marks a virtual member in adj's lowest bit; ptr is the byte offset.
    const bool isVirtual = (rep.adj & 1) != 0;
    const std::uintptr_t offset = rep.ptr;
#else
    const bool isVirtual = (rep.ptr & 1) != 0;
    const std::uintptr_t offset = rep.ptr - 1;
#endif
    return isVirtual ? static_cast<long>(offset / sizeof(void*)) : -1;
}

struct Slot {
    const char* name;
    long actual;
    long expected;
};

inline void expectSlots(std::initializer_list<Slot> slots) {
    for (const Slot& slot : slots) {
        EXPECT_EQ(slot.actual, slot.expected) << slot.name;
    }
}

}  // namespace qam::layout

// The offsets of Class's fields, each given as AT(field, lp64, ilp32): on a mismatch the
// compiler's note shows the index of the first field off its place.
#define LAYOUT_FIELDS(Class, ...)                                \
    static_assert(                                               \
        [] {                                                     \
            using LayoutClass = Class;                           \
            return ::qam::layout::firstMisplaced({__VA_ARGS__}); \
        }() == -1,                                               \
        "a field of " #Class " is off its place")
#define AT(field, lp64, ilp32)                    \
    ::qam::layout::At {                           \
        offsetof(LayoutClass, field), lp64, ilp32 \
    }
// sizeof and alignof.
#define LAYOUT_SIZE(Class, size64, size32, align64, align32)                              \
    static_assert(sizeof(Class) == ::qam::layout::abi(size64, size32), "sizeof " #Class); \
    static_assert(alignof(Class) == ::qam::layout::abi(align64, align32), "alignof " #Class)
// Where the data ends: a derived class's first field goes there (for non-POD classes, below
// their size when they have tail padding).
#define LAYOUT_END(Class, end64, end32)                                                   \
    static_assert(                                                                        \
        offsetof(::qam::layout::Tail<Class>, mFirst) == ::qam::layout::abi(end64, end32), \
        "data end of " #Class)
// The slot of Class::operation as an effect library's vtable call sees it.
#define LAYOUT_SLOT(Class, operation, slot)                                        \
    ::qam::layout::Slot {                                                          \
#Class "::" #operation, ::qam::layout::vtableSlot(&Class::operation), slot \
    }
