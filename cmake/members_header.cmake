# Writes quevar/members.h, the declarations of quevar.h one by one:
#     cmake -DCOMPILER=clang -DINCLUDE=include -DOUTPUT=members.h -P members_header.cmake
file(WRITE ${OUTPUT}.in "#include <quevar/quevar.h>\n")
# Left as they stand, to be what they are at the caller's.
execute_process(
  COMMAND ${COMPILER} -E -P -x c -mavx2 -mfma -I${INCLUDE} -DQUEVAR_TYPES_H -DQUEVAR_PURE=QUEVAR_PURE
          -DQUEVAR_WIDE_RESULT=QUEVAR_WIDE_RESULT ${OUTPUT}.in
  OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[ \n]+" " " text "${text}")
string(REGEX REPLACE " ?; ?" "@\n" text "${text}") # a semicolon would part a list
string(REGEX REPLACE " +([,)])" "\\1" text "${text}")
string(REGEX REPLACE "\n +" "\n" text "${text}")
string(STRIP "${text}" text)
string(REPLACE "@" ";" text "${text}")
file(WRITE ${OUTPUT} "/* Every member of quevar by itself, to be searched; made from quevar.h, which tells how values are passed. */
#ifndef QUEVAR_MEMBERS_H
#define QUEVAR_MEMBERS_H

#include \"types.h\"

#ifdef __cplusplus
extern \"C\" {
#endif

${text}

#ifdef __cplusplus
}
#endif

#endif
")
