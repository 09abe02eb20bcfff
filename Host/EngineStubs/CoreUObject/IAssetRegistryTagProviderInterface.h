#pragma once

#include "CoreMinimal.h"

// Native base classes implement it so their Blueprint subclasses' assets carry the class
// default's registry tags.
class IAssetRegistryTagProviderInterface
{
public:
	virtual bool ShouldAddCDOTagsToBlueprintClass() const;
};
