#pragma once

#include "CoreTypes.h"

template <class CharType>
struct TCondensedJsonPrintPolicy
{
	static constexpr bool bPretty = false;
};
