#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

class UWorld;

struct FWorldContext
{
	UWorld* World() const;
};

class UEngine : public UObject
{
};
