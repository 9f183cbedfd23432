/*
 * layout.h - checks a record's layout at compile time, beside the record, in C11 and in C++11.
 */
#ifndef PLATFORM_LAYOUT_H
#define PLATFORM_LAYOUT_H

#ifdef __cplusplus
#define KEL_LAYOUT_ASSERT static_assert
#else
#define KEL_LAYOUT_ASSERT _Static_assert
#endif

/** The record is exactly this many octets long. */
#define KEL_LAYOUT_SIZE(record, octets) KEL_LAYOUT_ASSERT(sizeof(record) == (octets), #record " has another size")

/** The field starts at this octet of the record. */
#define KEL_LAYOUT_AT(record, field, octet)                                                                            \
    KEL_LAYOUT_ASSERT(offsetof(record, field) == (octet), #record "." #field " sits elsewhere")

#endif
