# program_version(NAME): DASHCAM_VERSION is the version above as a text, in the program that tells it by --version.
function(program_version name)
  target_compile_definitions(${name} PRIVATE DASHCAM_VERSION="${PROJECT_VERSION}")
endfunction()
