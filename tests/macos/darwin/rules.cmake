# How a program is made of objects that no library of this machine fits to.
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_LINK_EXECUTABLE
      "/usr/bin/python3 \"${CMAKE_CURRENT_LIST_DIR}/link.py\" <TARGET> <OBJECTS> -- <LINK_LIBRARIES>")
endforeach()
# Qt's graphics ask for all of Linux's headers, which must not come before Darwin's.
set(CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)
