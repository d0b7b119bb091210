# Shared part of the ARM Linux toolchain files: Debian's cross compiler for TALVEQAM_TRIPLE,
# linking against the Debian root scripts/arm-sysroot.sh extracts for that architecture, and
# qemu-user running what the build makes (tests, tools) inside that root.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${TALVEQAM_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${TALVEQAM_TRIPLE}-g++)

set(TALVEQAM_SYSROOT /opt/talveqam/sysroots/${TALVEQAM_TRIPLE}
    CACHE PATH "Debian root of the target architecture")
set(CMAKE_SYSROOT ${TALVEQAM_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${TALVEQAM_QEMU} -L ${TALVEQAM_SYSROOT})
