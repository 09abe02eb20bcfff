#pragma once

#include "CoreTypes.h"

namespace ENamedThreads
{
	enum Type : int32
	{
		UnusedAnchor = -1,
		RHIThread,
		GameThread,
		ActualRenderingThread,
		AnyThread = 0xff,
		AnyHiPriThreadNormalTask = AnyThread,
		AnyBackgroundThreadNormalTask = AnyThread,
	};
}
