#pragma once

// Marks the classes and functions that effect libraries link against; everything
// else in libtalveQamCommon.so stays hidden.
#define TALVEQAM_EXPORT __attribute__((visibility("default")))
