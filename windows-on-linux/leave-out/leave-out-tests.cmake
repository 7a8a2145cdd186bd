# Tests that a name in leave-out.cmake which is that of nothing stops the configuration.
function(leave_out_test name function pattern expected)
  add_test(NAME ${name}
           COMMAND "${CMAKE_COMMAND}" -G "${CMAKE_GENERATOR}" -S "${WINDOWS_ON_LINUX}/leave-out"
                   -B "${CMAKE_BINARY_DIR}/windows-on-linux/${name}" -D "FUNCTION=${function}" -D "PATTERN=${pattern}")
  set_tests_properties(${name} PROPERTIES LABELS unit PASS_REGULAR_EXPRESSION "${expected}")
endfunction()
leave_out_test(leave_out_found_tests leave_out_tests "o(n|f)e" "one: left to the other targets; so it is[.]")
leave_out_test(leave_out_missing_tests leave_out_tests "one|g(one|old)" "\"g[(]one[|]old[)]\" matches none of the TESTS[.]")
leave_out_test(leave_out_missing_target_tests leave_out_targets "gone|one" "\"gone\" matches none of the BUILDSYSTEM_TARGETS[.]")
