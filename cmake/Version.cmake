# The version the programs report (--version) and the package carries: the
# git description of the source tree at configure time (the nearest tag
# "vX.Y" with the commits since and the commit, without the "v"), or the
# project version with the commit when no tag is reachable, or the project
# version alone outside a git checkout.
find_package(Git QUIET)
set(KV_VERSION ${PROJECT_VERSION})
if(GIT_FOUND)
  execute_process(COMMAND ${GIT_EXECUTABLE} -C ${CMAKE_SOURCE_DIR} describe --tags --match "v[0-9]*"
                  OUTPUT_VARIABLE kv_describe RESULT_VARIABLE kv_describe_rc
                  OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(kv_describe_rc EQUAL 0 AND kv_describe)
    string(REGEX REPLACE "^v" "" KV_VERSION "${kv_describe}")
  else()
    execute_process(COMMAND ${GIT_EXECUTABLE} -C ${CMAKE_SOURCE_DIR} rev-parse --short=7 HEAD
                    OUTPUT_VARIABLE kv_commit RESULT_VARIABLE kv_commit_rc
                    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(kv_commit_rc EQUAL 0 AND kv_commit)
      set(KV_VERSION "${PROJECT_VERSION}-g${kv_commit}")
    endif()
  endif()
endif()
# The day of that commit (for the manual pages and the release notes).
string(TIMESTAMP KV_VERSION_DATE "%Y-%m-%d" UTC)
if(GIT_FOUND)
  execute_process(COMMAND ${GIT_EXECUTABLE} -C ${CMAKE_SOURCE_DIR} log -1 --format=%cs
                  OUTPUT_VARIABLE kv_date RESULT_VARIABLE kv_date_rc
                  OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(kv_date_rc EQUAL 0 AND kv_date MATCHES "^[0-9]+-[0-9]+-[0-9]+$")
    set(KV_VERSION_DATE ${kv_date})
  endif()
endif()
# A Debian version: "-" would split off a Debian revision, so it becomes "+".
string(REPLACE "-" "+" KV_PACKAGE_VERSION "${KV_VERSION}")
message(STATUS "Korvane Map Editor version ${KV_VERSION}")
# For scripts that check what the build installs.
file(WRITE ${CMAKE_BINARY_DIR}/version.txt "${KV_VERSION}\n")

foreach(kv_exe korvane-mapedit korvane-map)
  if(TARGET ${kv_exe})
    target_compile_definitions(${kv_exe} PRIVATE KV_VERSION="${KV_VERSION}")
  endif()
endforeach()
