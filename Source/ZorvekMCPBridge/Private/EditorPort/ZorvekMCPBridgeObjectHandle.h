#pragma once

#include "CoreMinimal.h"

// An object of the editor as portable code holds it. The handle is opaque: only the editor port
// that produced it knows what it points at (a UObject in the editor, a simulated object in the
// host). Handles are valid on the game thread for the duration of one tool call; nobody keeps them.
class FZorvekMCPBridgeObjectHandle
{
public:
	FZorvekMCPBridgeObjectHandle() = default;
	explicit FZorvekMCPBridgeObjectHandle(void* InObject)
		: Object(InObject)
	{
	}

	bool IsValid() const { return Object != nullptr; }

	// For editor port implementations only.
	void* GetRaw() const { return Object; }

	bool operator==(const FZorvekMCPBridgeObjectHandle& Other) const { return Object == Other.Object; }
	bool operator!=(const FZorvekMCPBridgeObjectHandle& Other) const { return Object != Other.Object; }

	friend uint32 GetTypeHash(const FZorvekMCPBridgeObjectHandle& Handle)
	{
		return GetTypeHash(Handle.Object);
	}

private:
	void* Object = nullptr;
};

// The five names that identify an object in every tool reply.
struct FZorvekMCPBridgeObjectIdentity
{
	// Full path name, e.g. /Game/Cameras/CA_Hero.CA_Hero:SingleCameraDirector_0.
	FString ObjectPath;
	// Name of the outermost package; empty when the object has none.
	FString PackagePath;
	FString Name;
	FString ClassPath;
	FString ClassName;
};

// A class, struct or enum as the port describes it.
struct FZorvekMCPBridgeTypeInfo
{
	// Path name, e.g. /Script/Engine.Actor or /Game/Blueprints/BP_Hero.BP_Hero_C.
	FString Path;
	// Short name, e.g. Actor or BP_Hero_C.
	FString Name;
	// Path of the super class or super struct; empty for roots and enums.
	FString SuperPath;
	// For classes: EClassFlags bits as the engine stores them.
	uint32 ClassFlags = 0;
	// For classes: the nearest native class (the class itself when it is native).
	FString NativeClassPath;
	FString NativeClassName;
};

enum class EZorvekMCPBridgeTypeKind : uint8
{
	Class,
	Struct,
	Enum
};

// Class flag bits the portable code reads, with the engine's values (EClassFlags).
namespace ZorvekMCPBridgeClassFlags
{
	constexpr uint32 Abstract = 0x1;
	constexpr uint32 Native = 0x80;
	constexpr uint32 Interface = 0x4000;
	constexpr uint32 CompiledFromBlueprint = 0x40000;
	constexpr uint32 Deprecated = 0x2000000;
	constexpr uint32 NewerVersionExists = 0x80000000u;
}
