# Copies FROM to TO when it is there: the page is built by other tools than the program.
if(EXISTS ${FROM})
  file(COPY_FILE ${FROM} ${TO} ONLY_IF_DIFFERENT)
endif()
