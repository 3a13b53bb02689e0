// As wide as here, and another type on a Mac: a long long, like Qt's own.
#pragma once
typedef signed char int8_t;
typedef short int16_t;
typedef int int32_t;
typedef long long int64_t;
