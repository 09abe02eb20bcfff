// Declaration-only stand-ins for the engine's reflection macros: UnrealHeaderTool is not run,
// so the markers expand to nothing and GENERATED_BODY declares what generated code would.
#pragma once

#include "CoreMinimal.h"

#define UCLASS(...)
#define USTRUCT(...)
#define UENUM(...)
#define UINTERFACE(...)
#define UPROPERTY(...)
#define UFUNCTION(...)
#define UPARAM(...)
#define UMETA(...)
#define UDELEGATE(...)

class UClass;
class UScriptStruct;

#define GENERATED_BODY(...) \
public: \
	static UClass* StaticClass(); \
private:
#define GENERATED_UCLASS_BODY(...) \
public: \
	static UClass* StaticClass();
#define GENERATED_USTRUCT_BODY(...) \
public: \
	static UScriptStruct* StaticStruct();
#define GENERATED_IINTERFACE_BODY(...) public:
#define GENERATED_UINTERFACE_BODY(...) public:

enum EObjectFlags
{
	RF_NoFlags = 0x00000000,
	RF_Public = 0x00000001,
	RF_Standalone = 0x00000002,
	RF_MarkAsNative = 0x00000004,
	RF_Transactional = 0x00000008,
	RF_ClassDefaultObject = 0x00000010,
	RF_ArchetypeObject = 0x00000020,
	RF_Transient = 0x00000040,
	RF_MarkAsRootSet = 0x00000080,
};
ENUM_CLASS_FLAGS(EObjectFlags)

enum ELoadFlags
{
	LOAD_None = 0x00000000,
};
