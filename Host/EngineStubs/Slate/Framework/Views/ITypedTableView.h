#pragma once

#include "CoreMinimal.h"

namespace ESelectionMode
{
	enum Type
	{
		None,
		Single,
		SingleToggle,
		Multi
	};
}
