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

// Not in the reference notes beyond REN_None; values from the engine's ObjectMacros.h, check
// against the engine.
typedef uint32 ERenameFlags;
#define REN_None (0x0000)
#define REN_DoNotDirty (0x0004)
#define REN_DontCreateRedirectors (0x0010)
#define REN_NonTransactional (0x0020)

enum ELoadFlags
{
	LOAD_None = 0x00000000,
};

// Not in the reference notes (only the names SAVE_None and SAVE_NoError are); values from the
// engine's ObjectMacros.h, check against the engine.
enum ESaveFlags
{
	SAVE_None = 0x00000000,
	SAVE_NoError = 0x00000001,
};

// Not in the reference notes beyond its None value; check against the engine.
enum class EInternalObjectFlags : int32
{
	None = 0,
};

enum EClassFlags
{
	CLASS_None = 0x00000000u,
	CLASS_Abstract = 0x00000001u,
	CLASS_Native = 0x00000080u,
	CLASS_Interface = 0x00004000u,
	CLASS_CompiledFromBlueprint = 0x00040000u,
	CLASS_Deprecated = 0x02000000u,
	CLASS_NewerVersionExists = 0x80000000u,
};
ENUM_CLASS_FLAGS(EClassFlags)

enum EPropertyFlags : uint64
{
	CPF_None = 0,
	CPF_Edit = 0x0000000000000001,
	CPF_ConstParm = 0x0000000000000002,
	CPF_BlueprintVisible = 0x0000000000000004,
	CPF_BlueprintReadOnly = 0x0000000000000010,
	CPF_Parm = 0x0000000000000080,
	CPF_OutParm = 0x0000000000000100,
	CPF_ReturnParm = 0x0000000000000400,
	CPF_Transient = 0x0000000000002000,
	CPF_DisableEditOnInstance = 0x0000000000010000,
	CPF_ReferenceParm = 0x0000000008000000,
	CPF_Deprecated = 0x0000000020000000,
	CPF_AssetRegistrySearchable = 0x0000010000000000,
};
ENUM_CLASS_FLAGS(EPropertyFlags)

// Not in the reference notes beyond the type's name (UFunction::FunctionFlags); check the values
// against the engine. The plug-in only copies the bits.
enum EFunctionFlags : uint32
{
	FUNC_None = 0x00000000,
	FUNC_BlueprintPure = 0x10000000,
};
ENUM_CLASS_FLAGS(EFunctionFlags)
