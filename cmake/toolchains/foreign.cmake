# What the toolchains of foreign machines share. Libraries and headers come from the folder of the
# machine, and from CMAKE_PREFIX_PATH, which tools/portability fills; none from this machine.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${machine}-gcc)
set(CMAKE_CXX_COMPILER ${machine}-g++)
set(CMAKE_FIND_ROOT_PATH /usr/${machine})
foreach(folder IN LISTS CMAKE_PREFIX_PATH)
    list(APPEND CMAKE_FIND_ROOT_PATH ${folder})
endforeach()
foreach(kind IN ITEMS LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_PREFIX_PATH)
set(CMAKE_DISABLE_FIND_PACKAGE_PkgConfig ON) # it tells of this machine
