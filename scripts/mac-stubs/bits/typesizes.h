// How wide the system's types are on a Mac, where that is another width or another type than here:
// what is narrowed there, or fits no template, is found here. Over Debian's header of the same
// name.
#include_next <bits/typesizes.h>

#undef __MODE_T_TYPE
#define __MODE_T_TYPE unsigned short
#undef __NLINK_T_TYPE
#define __NLINK_T_TYPE unsigned short
#undef __DEV_T_TYPE
#define __DEV_T_TYPE int
#undef __SUSECONDS_T_TYPE
#define __SUSECONDS_T_TYPE int
#undef __BLKSIZE_T_TYPE
#define __BLKSIZE_T_TYPE int
#undef __OFF_T_TYPE
#define __OFF_T_TYPE long long
#undef __OFF64_T_TYPE
#define __OFF64_T_TYPE long long
#undef __INO_T_TYPE
#define __INO_T_TYPE unsigned long long
#undef __INO64_T_TYPE
#define __INO64_T_TYPE unsigned long long
#undef __BLKCNT_T_TYPE
#define __BLKCNT_T_TYPE long long
#undef __BLKCNT64_T_TYPE
#define __BLKCNT64_T_TYPE long long
