#pragma once

#include "CoreMinimal.h"

class UObject;

// Not in the reference notes beyond its name (the action database's keys); check against the
// engine.
struct FObjectKey
{
	FObjectKey();
	FObjectKey(const UObject* Object);

	UObject* ResolveObjectPtr() const;

	bool operator==(const FObjectKey& Other) const;
	bool operator!=(const FObjectKey& Other) const;
	friend uint32 GetTypeHash(const FObjectKey& Key);
};
