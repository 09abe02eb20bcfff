#pragma once

#include "CoreTypes.h"

template <class CharType>
struct TPrettyJsonPrintPolicy
{
	static constexpr bool bPretty = true;
};
