# arm64 (Android's arm64-v8a) on Debian: cmake -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(TALVEQAM_TRIPLE aarch64-linux-gnu)
set(TALVEQAM_QEMU qemu-aarch64-static)
include(${CMAKE_CURRENT_LIST_DIR}/LinuxCross.cmake)
