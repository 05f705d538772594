# Fails when the log of a tool that ends well all the same is not empty.
file(READ ${LOG} text)
if(NOT text STREQUAL "")
  message(FATAL_ERROR "${text}")
endif()
