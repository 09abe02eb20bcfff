#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectPort.h"
#include "EditorPort/ZorvekMCPBridgeTypeLookup.h"

// The pin-type vocabulary's type lookup, answered by the editor port's object domain.
class FZorvekMCPBridgePortTypeLookup : public IZorvekMCPBridgeTypeLookup
{
public:
	explicit FZorvekMCPBridgePortTypeLookup(IZorvekMCPBridgeObjects& InObjects)
		: Objects(InObjects)
	{
	}

	bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeIdentity& OutClass) const override
	{
		FZorvekMCPBridgeTypeInfo Class;
		if (!Objects.LoadClass(ClassPath, Class))
		{
			return false;
		}
		OutClass = FZorvekMCPBridgeTypeIdentity(Class.Path, Class.Name);
		return true;
	}

	bool FindStruct(const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutStruct) const override
	{
		return Find(EZorvekMCPBridgeTypeKind::Struct, PathOrName, OutStruct);
	}

	bool FindEnum(const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutEnum) const override
	{
		return Find(EZorvekMCPBridgeTypeKind::Enum, PathOrName, OutEnum);
	}

private:
	bool Find(EZorvekMCPBridgeTypeKind Kind, const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutType) const
	{
		FZorvekMCPBridgeTypeInfo Type;
		if (!Objects.FindType(Kind, PathOrName, Type))
		{
			return false;
		}
		OutType = FZorvekMCPBridgeTypeIdentity(Type.Path, Type.Name);
		return true;
	}

	IZorvekMCPBridgeObjects& Objects;
};
