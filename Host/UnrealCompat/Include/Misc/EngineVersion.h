#pragma once

#include "Misc/EngineVersionBase.h"
#include "Containers/UnrealString.h"

class FEngineVersion
{
public:
	FEngineVersion(uint16 InMajor, uint16 InMinor, uint16 InPatch, uint32 InChangelist, const FString& InBranch)
		: Major(InMajor), Minor(InMinor), Patch(InPatch), Changelist(InChangelist), Branch(InBranch) {}

	// The host reports itself as the engine release the plug-in targets, on a branch named for
	// the headless host, so no one mistakes it for a real editor.
	static const FEngineVersion& Current();
	static const FEngineVersion& CompatibleWith() { return Current(); }

	FString ToString(EVersionComponent LastComponent = EVersionComponent::Branch) const;
	uint16 GetMajor() const { return Major; }
	uint16 GetMinor() const { return Minor; }
	uint16 GetPatch() const { return Patch; }
	uint32 GetChangelist() const { return Changelist; }
	FString GetBranch() const { return Branch.Replace(TEXT("+"), TEXT("/")); }

private:
	uint16 Major;
	uint16 Minor;
	uint16 Patch;
	uint32 Changelist;
	FString Branch;
};
