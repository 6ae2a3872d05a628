# A room is a folder of src/, a static library that links only the rooms it may include (docs/architecture.md).

add_library(tavi_options INTERFACE)
target_include_directories(tavi_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_definitions(tavi_options INTERFACE TAVI_VERSION="${PROJECT_VERSION}")
target_compile_options(tavi_options INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Werror -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # False alarms of g++ 12 on std::string's operator+ (its bug 105329).
  target_compile_options(tavi_options INTERFACE -Wno-restrict -Wno-unknown-warning-option)  # the second for clang-tidy
endif()
target_link_libraries(tavi_options INTERFACE Threads::Threads)
if(TAVI_FUZZ)
  target_compile_options(tavi_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(TAVI_SANITIZE)
  target_compile_options(tavi_options INTERFACE -fsanitize=${TAVI_SANITIZE} -fno-omit-frame-pointer -O1 -g1)
  target_link_options(tavi_options INTERFACE -fsanitize=${TAVI_SANITIZE})
  if(TAVI_SANITIZE MATCHES undefined)
    target_compile_options(tavi_options INTERFACE -fno-sanitize-recover=undefined)
  endif()
endif()

# tavi_room(NAME FOLDER room...)   every .cpp of the folder; the rooms are what it may include
function(tavi_room name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  set(scope PUBLIC)
  if(sources)
    add_library(tavi_${name} STATIC ${sources})
  else()
    add_library(tavi_${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_link_libraries(tavi_${name} ${scope} tavi_options)
  foreach(room ${ARGN})
    target_link_libraries(tavi_${name} ${scope} tavi_${room})
  endforeach()
endfunction()

# tavi_test(NAME FOLDER library...)   one test program a room, from every .cpp of the folder; the main function is the
# shared one unless the folder has its own
function(tavi_test name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  if(NOT EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/main.cpp)
    list(APPEND sources ${PROJECT_SOURCE_DIR}/tests/main.cpp)
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE ${ARGN} tavi_test_support GTest::gtest GTest::gmock)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 900)
endfunction()

# tavi_bench(NAME FOLDER library...)   one benchmark program a topic
function(tavi_bench name source)
  add_executable(bench_${name} ${source})
  target_link_libraries(bench_${name} PRIVATE ${ARGN} benchmark::benchmark)
endfunction()
