# A run of the stateful fuzzer leaves nothing in the folder it was started
# from: a save under a name without a folder lands in its work folder.
#   cmake -DFUZZER=... -DSCRATCH=... -P stays_in_work.cmake
file(REMOVE_RECURSE "${SCRATCH}")
file(MAKE_DIRECTORY "${SCRATCH}/started-here")
file(WRITE "${SCRATCH}/steps.txt" "Form1.menu_file_new_Click\nForm6.Text1.Text = 4\nForm6.Text2.Text = 4\n"
     "Form6.Command2_Click\nMapPath = \"stray.map\"\nForm1.menu_file_save_Click\n")
execute_process(COMMAND "${FUZZER}" --replay "${SCRATCH}/steps.txt" --work "${SCRATCH}/work"
                WORKING_DIRECTORY "${SCRATCH}/started-here" RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "the replay failed (${rc})")
endif()
file(GLOB left "${SCRATCH}/started-here/*")
if(left)
  message(FATAL_ERROR "files left where the run was started: ${left}")
endif()
if(NOT EXISTS "${SCRATCH}/work/editor/stray.map")
  message(FATAL_ERROR "the save did not land in the work folder")
endif()
