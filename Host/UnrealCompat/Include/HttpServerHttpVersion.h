#pragma once

#include "CoreTypes.h"

namespace HttpVersion
{
	enum class EHttpServerHttpVersion : uint8
	{
		HTTP_VERSION_UNKNOWN,
		HTTP_VERSION_1_0,
		HTTP_VERSION_1_1
	};
}
