#pragma once

#include "CoreMinimal.h"

class ISettingsSection
{
public:
	virtual ~ISettingsSection() = default;
};
