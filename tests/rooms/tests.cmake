# No room includes a room above it.
find_package(Python3 3.9 COMPONENTS Interpreter)
if(Python3_FOUND)
  add_test(NAME rooms COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_LIST_DIR}/check_rooms.py")
  add_test(NAME rooms.checker COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_LIST_DIR}/check_rooms_test.py")
endif()
