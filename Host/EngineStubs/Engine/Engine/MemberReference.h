#pragma once

#include "CoreMinimal.h"
#include "Misc/Guid.h"
#include "Templates/SubclassOf.h"
#include "UObject/Class.h"
#include "UObject/ObjectMacros.h"

USTRUCT()
struct FMemberReference
{
	GENERATED_USTRUCT_BODY()

public:
	void SetExternalMember(FName InMemberName, TSubclassOf<UObject> InMemberParentClass);
	void SetExternalMember(FName InMemberName, TSubclassOf<UObject> InMemberParentClass, FGuid& InMemberGuid);
	void SetSelfMember(FName InMemberName);
	void SetSelfMember(FName InMemberName, FGuid& InMemberGuid);
	void SetLocalMember(FName InMemberName, UStruct* InScope, const FGuid InMemberGuid);
	FName GetMemberName() const;
	FGuid GetMemberGuid() const;
	UClass* GetMemberParentClass() const;
	UClass* GetMemberParentClass(UClass* SelfScope) const;
	bool IsSelfContext() const;
	bool IsLocalScope() const;
	template <class TFieldType> TFieldType* ResolveMember(UClass* SelfScope = nullptr) const;
};
