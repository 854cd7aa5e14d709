# Read by ctest when it starts: makes each suite of a test program one test of
# its own. A process for each single test would spend most of a run on starting;
# large suites are split, so that they share the processors.
# Expects PROGRAM and LABELS.
set(tests_in_a_process 50)

execute_process(COMMAND ${PROGRAM} --gtest_list_tests
  OUTPUT_VARIABLE listing ERROR_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  # Not built, or broken. Fails where it is asked for: a run may want others alone.
  get_filename_component(name ${PROGRAM} NAME)
  add_test("${name} lists its tests" ${PROGRAM} --gtest_list_tests)
  set_tests_properties("${name} lists its tests" PROPERTIES LABELS "${LABELS}")
  return()
endif()
# Parameters are printed behind a name, with signs that a list would trip over.
string(REGEX REPLACE "[^\n]*\\.main\\.cc\n" "" listing "${listing}")
string(REGEX REPLACE " +#[^\n]*" "" listing "${listing}")
string(REGEX MATCHALL "[^\n]+" lines "${listing}")

# Those that take longest begin first, so that none of them is left at the end of a run.
function(ov_add_suite suite count)
  set(cost 0)
  if(LABELS MATCHES "slow" OR suite MATCHES "^Files/")
    set(cost 100)
  endif()
  math(EXPR parts "(${count} + ${tests_in_a_process} - 1) / ${tests_in_a_process}")
  foreach(part RANGE 1 ${parts})
    math(EXPR index "${part} - 1")
    set(name "${suite}")
    if(parts GREATER 1)
      set(name "${suite}(${part} of ${parts})")
    endif()
    add_test("${name}" ${PROGRAM} "--gtest_filter=${suite}.*" --gtest_brief=1)
    set_tests_properties("${name}" PROPERTIES TIMEOUT 900 COST ${cost} LABELS "${LABELS}"
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()

set(suite "")
set(count 0)
foreach(line IN LISTS lines ITEMS "end.")
  if(line MATCHES "^  ")
    math(EXPR count "${count} + 1")
    continue()
  endif()
  if(count GREATER 0)
    ov_add_suite("${suite}" ${count})
  endif()
  string(REGEX REPLACE "\\.$" "" suite "${line}")
  set(count 0)
endforeach()
