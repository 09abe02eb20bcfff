// How the PCG tools reach PCG objects without linking against the plug-in: classes by path,
// functions by name through FindFunction and ProcessEvent, members by property name.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

class IZorvekMCPBridgeEditorPort;
class IZorvekMCPBridgeReflection;
struct FZorvekMCPBridgeActorSnapshot;

namespace ZorvekMCPBridgePcgReflection
{
	extern const TCHAR* const ComponentClassPath;
	extern const TCHAR* const ManagedActorsClassPath;
	// The base of every point data class in 5.6 and later (UPCGPointData and UPCGPointArrayData);
	// UPCGPointData before.
	extern const TCHAR* const BasePointDataClassPath;
	extern const TCHAR* const PointDataClassPath;

	// Calls FunctionName on the object with its first boolean parameter that is not the return
	// value set to bFlag: the function is found on the object's class, its parameter block made
	// and initialised, the flag set, the call made with ProcessEvent and the block destroyed.
	// False with the message when it cannot be called: "<ObjectWord> was invalid." for a null
	// object, "<ObjectWord> did not expose <FunctionName>." when the class has no such function.
	bool CallWithFlag(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* ObjectWord, const FString& FunctionName, bool bFlag, FString& OutError);

	// Calls a function without inputs that returns an integer (GetNumPoints); false when the
	// object's class has no such function or the result is no number.
	bool CallIntegerGetter(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& FunctionName, int64& OutValue);

	// The actor's first component of the class /Script/PCG.PCGComponent (subclasses included),
	// as FindComponentByClass finds it; invalid when there is none or the class does not load.
	FZorvekMCPBridgeObjectHandle FindPcgComponent(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeActorSnapshot& Actor);

	// A boolean property by name ("True"/"False" in the engine's export text); false when the
	// class has no such property or its text is no boolean.
	bool ReadBoolProperty(const IZorvekMCPBridgeReflection& Reflection, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName, bool& OutValue);
}
