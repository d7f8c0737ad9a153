# Linker version script listing exactly the functions the public headers
# declare with DSP_API. Hidden visibility already keeps library code private;
# the script also keeps out what the C++ runtime's templates would export.
function(libdsp_export_only_declared target)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
  set(names "")
  foreach(header IN LISTS headers)
    file(STRINGS ${header} lines REGEX "^[ \t]*DSP_API[ \t]")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[^(]*[^A-Za-z0-9_(]([A-Za-z_][A-Za-z0-9_]*)[ \t]*\\(.*" "\\1" name "${line}")
      string(APPEND names "    ${name};\n")
    endforeach()
  endforeach()
  set(script ${PROJECT_BINARY_DIR}/libdsp.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "{\n  global:\n${names}  local: *;\n};\n")
  target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()
