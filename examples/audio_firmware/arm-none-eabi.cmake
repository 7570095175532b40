# For CMAKE_TOOLCHAIN_FILE: the free tool chain of 32-bit ARM cores.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-none-eabi-gcc)
set(CMAKE_C_FLAGS_INIT "-mcpu=cortex-r5 -marm -mfloat-abi=soft")
# A program linked for no system at all doesn't run: compile tests only.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
