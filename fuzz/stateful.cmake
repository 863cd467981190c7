# The stateful fuzzer's plain driver (any compiler), and its bounded seeded
# run as a test: under the sanitizers in the sanitizer build.
add_library(kv_statefuzz_lib STATIC ${CMAKE_SOURCE_DIR}/fuzz/statefuzz.cpp)
target_link_libraries(kv_statefuzz_lib PUBLIC korvane_gui)
target_include_directories(kv_statefuzz_lib PUBLIC ${CMAKE_SOURCE_DIR}/fuzz)
target_compile_options(kv_statefuzz_lib PRIVATE ${KV_WARNINGS})
add_executable(kv_statefuzz ${CMAKE_SOURCE_DIR}/fuzz/statefuzz_main.cpp)
target_link_libraries(kv_statefuzz PRIVATE kv_statefuzz_lib)
target_compile_options(kv_statefuzz PRIVATE ${KV_WARNINGS})
target_compile_definitions(kv_statefuzz PRIVATE KV_DEFAULT_DATA_DIR="${KV_DEFAULT_DATA_DIR}")
if(TARGET kv_default_data)
  add_dependencies(kv_statefuzz kv_default_data)
endif()
if(KV_BUILD_TESTS)
  set(KV_STATEFUZZ_STEPS 300 CACHE STRING "Steps of the seeded stateful fuzz run among the tests")
  add_test(NAME StateFuzz.SeededRun
           COMMAND kv_statefuzz --seed 1 --steps ${KV_STATEFUZZ_STEPS} --restart 100 --step-limit 60
                   --work ${CMAKE_BINARY_DIR}/statefuzz)
  set_tests_properties(StateFuzz.SeededRun PROPERTIES TIMEOUT 150 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  add_test(NAME StateFuzz.StaysInItsWorkFolder
           COMMAND ${CMAKE_COMMAND} -DFUZZER=$<TARGET_FILE:kv_statefuzz> -DSCRATCH=${CMAKE_BINARY_DIR}/statefuzz-cwd
                   -P ${CMAKE_SOURCE_DIR}/fuzz/stays_in_work.cmake)
  set_tests_properties(StateFuzz.StaysInItsWorkFolder PROPERTIES TIMEOUT 60 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endif()
