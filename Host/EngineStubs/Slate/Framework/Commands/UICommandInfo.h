#pragma once

#include "CoreMinimal.h"

namespace EUserInterfaceActionType
{
	enum Type
	{
		None,
		Button,
		ToggleButton,
		RadioButton,
		Check,
		CollapsedButton
	};
}

class FUICommandInfo;
class FUICommandList;
