# What does not run where a build for another architecture is tested: functions of a test program, each with its reason.
function(not_on triple test reason)
  if(CMAKE_CROSSCOMPILING AND CMAKE_LIBRARY_ARCHITECTURE STREQUAL triple)
    list(JOIN ARGN "," functions)
    set(without_${test} ${functions} PARENT_SCOPE)
  endif()
endfunction()

# Under qemu-arm-static; all of these run in the build for i386.
set(process "QProcess starts nothing: the emulator refuses clone(CLONE_PIDFD)")
set(trace "a process is stopped at each of its system calls: the emulator has no ptrace()")
not_on(arm-linux-gnueabihf unit/atomicfile_test ${trace} aWriterKilledAtAnyStepLeavesAWholeFile)
not_on(arm-linux-gnueabihf unit/aviheader_test ${process} secondsOfRealFiles)
not_on(arm-linux-gnueabihf unit/devicepath_test ${process} onTheCameraThePathIsThePath aRootStandsInFront theRootIsReadOnce
  aShellReadsThePathBack aLineBreakAtTheEndIsQuotedToo)
not_on(arm-linux-gnueabihf unit/paneldevice_test "the emulator has no openpty()" anotherRangeIsScaled
  anOffsetPressureIsReleasedAtItsLeast aRangeThatIsNoneIsThePanels whatIsNoInputDeviceIsThePanel
  withoutPressureTheKeyTellsTheTouch withPressureTheKeyTellsNothing)
not_on(arm-linux-gnueabihf unit/pictures_test ${process} aGoodRowIsDrawn anotherLanguageHasPicturesOfItsOwn
  aTranslatedCaptionIsMadeToFit theGeneratorRefuses)
not_on(arm-linux-gnueabihf unit/settings_test ${trace} theStartTidiesUpAfterAKilledSave)
not_on(arm-linux-gnueabihf unit/touchthread_test "the emulator has no openpty()" aDeviceOfThisMachineHasItsOwnRecords)

# Native, but of 32 bits.
set(clock "libfaketime does not reach a program of 32 bits with 64-bit times")
not_on(i386-linux-gnu system/bench_life_test ${clock} endsAreClean)
not_on(i386-linux-gnu system/fakeclock_test ${clock} waitsAreNotTouched aRunningProgramFollows filesKeepTheirTimes
  theNextProgramIsNotHeldUp nothingIsLeft)
not_on(i386-linux-gnu system/replay_test ${clock} anotherTimeIsTheSameAgain)
