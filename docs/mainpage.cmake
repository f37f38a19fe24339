# Writes the reference's main page: the README's opening paragraph and its
# host start-up section, then the subsystem pages.
#   cmake -DREADME=... -DOUTPUT=... -DVERSION=... -P mainpage.cmake

file(READ ${README} readme)
# The opening paragraph: from after the title to the first blank line.
string(REGEX MATCH "^# [^\n]*\n\n([^\n]+\n)+" intro "${readme}")
string(REGEX REPLACE "^# [^\n]*\n\n" "" intro "${intro}")
string(FIND "${readme}" "## Using it in a host application" start)
if(start EQUAL -1)
    message(FATAL_ERROR "${README} has no section \"Using it in a host application\"")
endif()
string(SUBSTRING "${readme}" ${start} -1 startup)
# Up to the README's next section.
string(FIND "${startup}" "\n## " end)
if(NOT end EQUAL -1)
    string(SUBSTRING "${startup}" 0 ${end} startup)
endif()

file(WRITE ${OUTPUT} "# liborvacat-qt ${VERSION} {#mainpage}

${intro}
${startup}
## Subsystems

- @subpage registries
- @subpage singleinstance
- @subpage controls
- @subpage sheets
- @subpage views
- @subpage help
- @subpage platform
- @subpage designer
")
