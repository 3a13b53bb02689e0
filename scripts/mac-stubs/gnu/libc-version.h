// No Mac has this header.
#error "no Mac has <gnu/libc-version.h>"
