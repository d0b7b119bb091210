# 32-bit ARM as Android's armeabi-v7a (ARMv7-A with NEON), but with the hard-float calling
# convention of Debian's armhf: cmake -DCMAKE_TOOLCHAIN_FILE=cmake/arm-linux-gnueabihf.cmake
set(CMAKE_SYSTEM_PROCESSOR armv7-a)
set(TALVEQAM_TRIPLE arm-linux-gnueabihf)
# Mesa's llvmpipe for armhf gets 0 back from every maths routine its shader code calls out to
# (floor, fract, mod, pow, exp2), so GL_MIRRORED_REPEAT and most shaders draw wrong: its
# softpipe, plain C, draws as llvmpipe does on the other architectures.
set(TALVEQAM_QEMU qemu-arm-static -E GALLIUM_DRIVER=softpipe)
set(CMAKE_C_FLAGS_INIT "-march=armv7-a -mfpu=neon -mfloat-abi=hard")
set(CMAKE_CXX_FLAGS_INIT "-march=armv7-a -mfpu=neon -mfloat-abi=hard")
include(${CMAKE_CURRENT_LIST_DIR}/LinuxCross.cmake)
