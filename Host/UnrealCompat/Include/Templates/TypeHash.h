#pragma once

#include "CoreTypes.h"

inline uint32 HashCombine(uint32 A, uint32 C)
{
	uint32 B = 0x9e3779b9;
	A += B;
	A -= B; A -= C; A ^= (C >> 13);
	B -= C; B -= A; B ^= (A << 8);
	C -= A; C -= B; C ^= (B >> 13);
	A -= B; A -= C; A ^= (C >> 12);
	B -= C; B -= A; B ^= (A << 16);
	C -= A; C -= B; C ^= (B >> 5);
	A -= B; A -= C; A ^= (C >> 3);
	B -= C; B -= A; B ^= (A << 10);
	C -= A; C -= B; C ^= (B >> 15);
	return C;
}

template <typename T>
inline std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>, uint32> GetTypeHash(T Value)
{
	const uint64 Wide = (uint64)Value;
	return (uint32)(Wide ^ (Wide >> 32)) * 2654435761u;
}

template <typename T>
inline uint32 GetTypeHash(T* Pointer)
{
	return GetTypeHash((UPTRINT)Pointer);
}
