# Writes the language table as rows of an array of LanguageRow. The head of languages.tsv describes its columns.
#
#   cmake -DINPUT=languages.tsv -DOUTPUT=language_rows.inc -P language_rows.cmake
file(STRINGS ${INPUT} lines ENCODING UTF-8)
set(rows "// Made of languages.tsv. Do not edit.\n")
foreach(line IN LISTS lines)
  if(line MATCHES "^#")
    continue()
  endif()
  if(NOT line MATCHES "^([A-Z0-9-]+)\t(0x[0-9A-F]+)\t([0-9]+)\t([A-Z][a-z]+)\t([^\t]+)(\t([A-Z0-9_ -]+))?$")
    message(FATAL_ERROR "${INPUT}: not a row of five or six columns with tabs between them: ${line}")
  endif()
  string(APPEND rows "{u\"${CMAKE_MATCH_1}\", u\"${CMAKE_MATCH_5}\", ${CMAKE_MATCH_2}, ${CMAKE_MATCH_3}, "
    "u\"${CMAKE_MATCH_4}\", u\"${CMAKE_MATCH_7}\"},\n")
endforeach()
file(WRITE ${OUTPUT} "${rows}")
