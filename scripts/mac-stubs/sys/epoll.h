// No Mac has this header.
#error "no Mac has <sys/epoll.h>"
