# The readers of what comes from outside under clang's coverage-guided fuzzer, all in one program. The sources that they are made
# of are compiled by clang; what these stand on, and what is asked of them (readers/), is as for every test. Built by ./test, which
# installs clang: target `fuzz_readers`.
set(sources
  gui/firmware/msgthread gui/led/ledfilemanager gui/parking/pfileinfo gui/recordings/aviheader
  gui/recordings/recordingfilemanager gui/settings/initext gui/settings/settings gui/touch/paneldevice gui/touch/touchthread
  recorder/base/settingstore recorder/base/setupblock recorder/card/clipfacts recorder/firmware/argument
  recorder/firmware/scenario recorder/service/members recorder/service/requests
  bench/camera/bench bench/record/recordfile bench/record/recordroot bench/record/replay bench/server/answer bench/server/query
  bench/server/requesthead bench/server/wait)

file(GLOB promises CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/readers/*.cpp ${CMAKE_CURRENT_LIST_DIR}/readers/*.h)
add_library(fuzz_promises OBJECT EXCLUDE_FROM_ALL ${promises})
set_target_properties(fuzz_promises PROPERTIES AUTOMOC OFF)
target_link_libraries(fuzz_promises PRIVATE ${libraries} fake)
target_precompile_headers(fuzz_promises REUSE_FROM precompiled_tests)
target_compile_definitions(fuzz_promises PRIVATE SOURCE_DIR="${PROJECT_SOURCE_DIR}" BINARY_DIR="${PROJECT_BINARY_DIR}")

set(flags -std=c++20 -O1 -g1 -fPIC -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all
  -fsanitize-coverage-ignorelist=${CMAKE_CURRENT_LIST_DIR}/timely)
set(includes "")
foreach(library Core Core5Compat Gui Widgets Network HttpServer)
  list(APPEND includes $<TARGET_PROPERTY:Qt6::${library},INTERFACE_INCLUDE_DIRECTORIES>)
endforeach()
set(includes "$<FILTER:$<REMOVE_DUPLICATES:${includes}>,EXCLUDE,^/usr/include$>")  # the compiler's own

# The sources of a room are read as one: most of the time goes into the headers that all of them include.
set(rooms "")
foreach(source ${sources})
  cmake_path(GET source PARENT_PATH room)
  string(REPLACE / _ room ${room})
  list(APPEND rooms ${room})
  string(APPEND ${room}_source "#include \"${PROJECT_SOURCE_DIR}/${source}.cpp\"\n")
endforeach()
list(REMOVE_DUPLICATES rooms)
set(objects "")
foreach(room ${rooms})
  set(source ${CMAKE_CURRENT_BINARY_DIR}/fuzz/${room}.cpp)
  set(object ${CMAKE_CURRENT_BINARY_DIR}/fuzz/${room}.o)
  file(CONFIGURE OUTPUT ${source} CONTENT "${${room}_source}")
  add_custom_command(OUTPUT ${object}
    COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} clang++ ${flags} -I${PROJECT_SOURCE_DIR} "-isystem$<JOIN:${includes},;-isystem>"
      -MD -MF ${object}.d -c ${source} -o ${object}
    DEPENDS ${source} ${CMAKE_CURRENT_LIST_DIR}/timely DEPFILE ${object}.d COMMAND_EXPAND_LISTS VERBATIM)
  list(APPEND objects ${object})
endforeach()

# In a group the linker looks for what is needed in any order.
set(rooms gui_touch gui_firmware gui_led gui_parking gui_recordings gui_screen gui_settings gui_base gui_vocabulary
  bench_server bench_record bench_camera bench_footage bench_lcd bench_panel bench_supervise
  recorder_firmware recorder_recording recorder_device recorder_video recorder_card recorder_base recorder_link recorder_service)
set(archives "")
foreach(library ${rooms} Qt6::Core5Compat Qt6::HttpServer Qt6::WebSockets Qt6::Network Qt6::Test Qt6::Widgets
    Qt6::Gui Qt6::Core)
  list(APPEND archives $<TARGET_FILE:${library}>)
endforeach()
set(program ${CMAKE_CURRENT_BINARY_DIR}/fuzz/fuzz)
add_custom_command(OUTPUT ${program}
  COMMAND clang++ ${flags} $<$<BOOL:${MOLD}>:-fuse-ld=mold> ${objects} $<TARGET_OBJECTS:fuzz_promises> $<TARGET_OBJECTS:fake>
    -Wl,--start-group ${archives} -Wl,--end-group -lavdevice -lavformat -lavcodec -lavutil -lswscale -o ${program}
  DEPENDS ${objects} ${rooms} fuzz_promises $<TARGET_OBJECTS:fuzz_promises> fake $<TARGET_OBJECTS:fake>
  COMMAND_EXPAND_LISTS VERBATIM)
add_custom_target(fuzz_readers DEPENDS ${program})

# What CTest runs: each row of the table of readers. Seed 1, and nothing learnt from the operands of comparisons: those can be
# addresses, which differ from build to build, and a test goes the same way wherever it runs.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/readers/main.cpp)
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/readers/main.cpp rows REGEX "^ +{\"[a-z]+\", Take")
foreach(row ${rows})
  string(REGEX REPLACE "^ +{\"([a-z]+)\".*" "\\1" reader "${row}")
  add_test(NAME fuzz/${reader} COMMAND ${CMAKE_CURRENT_LIST_DIR}/run ${program} ${reader} -seed=1 -runs=20000 -use_cmp=0 -verbosity=0)
  set_tests_properties(fuzz/${reader} PROPERTIES LABELS guided TIMEOUT 600 PROCESSORS 2)
endforeach()
