# For Linux on another processor, with Debian's cross compiler, and qemu to run
# what it makes. TOVA_TARGET names the processor, such as s390x.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TOVA_TARGET)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${TOVA_TARGET})
set(CMAKE_CXX_COMPILER ${TOVA_TARGET}-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR
  qemu-${TOVA_TARGET} -L /usr/${TOVA_TARGET}-linux-gnu)

# Libraries of this machine are of no use; programs that help to build are.
set(CMAKE_FIND_ROOT_PATH /usr/${TOVA_TARGET}-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
