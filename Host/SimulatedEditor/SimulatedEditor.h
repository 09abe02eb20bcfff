// The simulated editor: an in-memory project with the engine's object model as far as the tools
// depend on it - packages and objects with path names, classes with super classes and flags,
// reflected properties with flags and native type texts, struct and array values, object
// references, the engine's text forms for export and import, and an asset registry in a fixed
// order. It backs the headless host and is the test double of every tool.
#pragma once

#include "CoreMinimal.h"
#include "EditorPort/ZorvekMCPBridgeAssetRegistryPort.h"
#include "EditorPort/ZorvekMCPBridgeMaterialPort.h"
#include "Templates/Function.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class FSimulatedBlueprints;
class FSimulatedWorld;
class FSimulatedObject;
class FSimulatedType;
struct FSimulatedVessaState;

// One entry of the undo history: a transaction that recorded at least one change.
struct FSimulatedTransaction
{
	FString Title;
	int32 RecordedChanges = 0;
};

enum class ESimulatedPropertyType : uint8
{
	Bool,
	Byte,
	Int,
	Int64,
	UInt16,
	Float,
	Double,
	String,
	Name,
	Text,
	// A uint8 property with an enum (TEnumAsByte<...>).
	ByteEnum,
	// An enum class property.
	Enum,
	Struct,
	Object,
	SoftObject,
	Class,
	Array
};

// The identity an FText carries, which decides its export form.
enum class ESimulatedTextIdentity : uint8
{
	// FText::FromString made in the editor: exported as the bare string.
	None,
	// Namespace, key and source: NSLOCTEXT("Namespace", "Key", "Source").
	Localized,
	// INVTEXT("Source").
	CultureInvariant,
	// A string table entry: LOCTABLE("TableId", "Key"), with the table id in TextNamespace.
	StringTable
};

// One value of a property. Which members count depends on the property type: Bool; Integer for
// integers and enums; Real for floats; Text for strings, names (empty for None), a text's source
// string (with TextIdentity, TextNamespace and TextKey) and soft paths; Object for references;
// Items for struct fields (in the struct's field order) and array elements.
struct FSimulatedValue
{
	bool Bool = false;
	int64 Integer = 0;
	double Real = 0.0;
	FString Text;
	ESimulatedTextIdentity TextIdentity = ESimulatedTextIdentity::None;
	FString TextNamespace;
	FString TextKey;
	FSimulatedObject* Object = nullptr;
	std::vector<FSimulatedValue> Items;
};

struct FSimulatedProperty
{
	FString Name;
	ESimulatedPropertyType Type = ESimulatedPropertyType::Int;
	uint64 Flags = 0;
	// The enum, the struct, the class an object property references, or a class property's meta
	// class.
	FSimulatedType* TypeObject = nullptr;
	std::shared_ptr<FSimulatedProperty> Inner;
	// The C++ default of the member (a struct's constructor, a class default); zero when null.
	std::shared_ptr<FSimulatedValue> Default;
	// False stands for a property the port cannot export at all (the port's ExportText returns
	// false); inside structs and arrays such a field is left out.
	bool bExportable = true;
};

// What the material editor knows about an expression class beyond its properties.
struct FSimulatedExpressionClassInfo
{
	// Caption lines as GetCaption adds them, as templates (see FormatCaption); a line that comes
	// out empty is not added.
	TArray<FString> CaptionLines;
	TArray<FZorvekMCPBridgeMaterialOutputSnapshot> Outputs;
	bool bParameter = false;
};

// Function flag bits with the engine's values (EFunctionFlags).
namespace SimulatedFunctionFlags
{
	constexpr uint32 Final = 0x1;
	constexpr uint32 Event = 0x800;
	constexpr uint32 Static = 0x2000;
	constexpr uint32 Public = 0x20000;
	constexpr uint32 Private = 0x40000;
	constexpr uint32 Protected = 0x80000;
	constexpr uint32 HasOutParms = 0x400000;
	constexpr uint32 BlueprintCallable = 0x4000000;
	constexpr uint32 BlueprintEvent = 0x8000000;
	constexpr uint32 BlueprintPure = 0x10000000;
	constexpr uint32 Const = 0x40000000;
	constexpr uint32 Native = 0x400;
}

// Parameter flag bits with the engine's values (EPropertyFlags); parameters are properties of
// the function with CPF_Parm.
namespace SimulatedParameterFlags
{
	constexpr uint64 ConstParm = 0x2;
	constexpr uint64 Parm = 0x80;
	constexpr uint64 OutParm = 0x100;
	constexpr uint64 ReturnParm = 0x400;
	constexpr uint64 ReferenceParm = 0x8000000;
}

struct FSimulatedFunction;

// What running a function does in the simulation, standing in for its native code or Blueprint
// bytecode: reads the inputs from the parameter block (one value per parameter, in parameter
// order) and writes the outputs into it. Self is the object the function runs on.
using FSimulatedFunctionBody = TFunction<void(FSimulatedObject& Self, const FSimulatedFunction& Function, std::vector<FSimulatedValue>& Parameters)>;

// A UFunction: parameters in declaration order (the return value, named ReturnValue, last for
// native functions), flags and metadata as an editor build keeps them.
struct FSimulatedFunction
{
	FString Name;
	FSimulatedType* Owner = nullptr;
	uint32 FunctionFlags = 0;
	std::vector<std::shared_ptr<FSimulatedProperty>> Parameters;
	// GetMetaData / HasMetaData: a key present with an empty value is still present.
	TMap<FString, FString> MetaData;
	// Null for functions that do nothing when called (events without an implementation).
	FSimulatedFunctionBody Body;

	bool HasAnyFunctionFlags(uint32 Flags) const { return (FunctionFlags & Flags) != 0; }
	const FString* FindMetaData(const FString& Key) const { return MetaData.Find(Key); }
};

class FSimulatedObject
{
public:
	virtual ~FSimulatedObject() = default;

	FString Name;
	FSimulatedType* Class = nullptr;
	// Null for packages.
	FSimulatedObject* Outer = nullptr;
	// One per entry of the class's property list.
	std::vector<FSimulatedValue> Values;
	// False models an asset whose package fails to load.
	bool bLoadable = true;
	// Created by its outer's constructor (CreateDefaultSubobject): a reference to it exported
	// with that outer as owner is just its name.
	bool bDefaultSubobject = false;

	// The engine's path name: "Package.Asset", "Package.Asset:Sub", "Package.Asset:Sub.Inner".
	FString GetPathName() const;
	const FSimulatedObject* GetOutermost() const;
	bool IsPackage() const { return Outer == nullptr; }
};

enum class ESimulatedTypeKind : uint8
{
	Class,
	Struct,
	Enum
};

// How a struct's value is written as text.
enum class ESimulatedStructTextForm : uint8
{
	// The generic "(Field=Value,...)": fields equal to their default are left out.
	Fields,
	// STRUCT_Atomic / immutable structs (FVector, FRotator, FColor, FIntPoint...): every field.
	Atomic,
	// FGuid's native form: 32 hexadecimal digits.
	Guid,
	// Kept and exported as the text it was given (instanced structs and the like).
	Verbatim
};

class FSimulatedType : public FSimulatedObject
{
public:
	ESimulatedTypeKind Kind = ESimulatedTypeKind::Class;
	FSimulatedType* Super = nullptr;
	uint32 ClassFlags = 0;
	// Declared by this type, in declaration order.
	std::vector<std::shared_ptr<FSimulatedProperty>> OwnProperties;
	// The engine's field order: own properties first, then the super type's.
	std::vector<const FSimulatedProperty*> AllProperties;
	// Structs: the order the struct exporter writes fields in (super struct's fields first), as
	// indices into AllProperties.
	std::vector<size_t> TextFieldOrder;
	ESimulatedStructTextForm StructTextForm = ESimulatedStructTextForm::Fields;
	// Enums: enumerator names as authored (EBlendMode: BLEND_Opaque; enum classes: State) and
	// their values.
	TArray<FString> EnumNames;
	TArray<int64> EnumValues;
	bool bEnumClass = false;
	std::shared_ptr<FSimulatedExpressionClassInfo> ExpressionInfo;
	// Classes: functions declared by this class, in declaration order.
	std::vector<std::shared_ptr<FSimulatedFunction>> Functions;

	bool IsChildOf(const FSimulatedType* Base) const;
	int32 FindPropertyIndex(const FString& PropertyName) const;
	// UClass::FindFunctionByName with inherited functions: this class first, then its supers;
	// names compare without regard to case. Null when there is none.
	const FSimulatedFunction* FindFunction(const FString& FunctionName) const;
	// The C++ prefix of the type: U, A, F or E.
	const TCHAR* GetPrefixCpp() const;
	// Rebuilds AllProperties; call after properties or the super type change.
	void RebuildPropertyList();
};

class FSimulatedEditor
{
public:
	FSimulatedEditor();
	~FSimulatedEditor();
	FSimulatedEditor(const FSimulatedEditor&) = delete;
	FSimulatedEditor& operator=(const FSimulatedEditor&) = delete;

	// Loads a project fixture (see SampleProject/README.md for the format); relative "include"
	// files are read from the fixture's folder. On failure OutError names the file and the entry.
	bool LoadProjectFile(const FString& FilePath, FString& OutError);
	bool LoadProjectJson(const FString& JsonText, const FString& BaseDirectory, FString& OutError);
	const FString& GetProjectName() const { return ProjectName; }

	// Building the model.
	FSimulatedType* AddClass(const FString& Path, const FString& SuperPath, uint32 ClassFlags, FString& OutError);
	FSimulatedType* AddStruct(const FString& Path, const FString& SuperPath, FString& OutError);
	FSimulatedType* AddEnum(const FString& Path, const TArray<FString>& Names, bool bEnumClass, FString& OutError);
	// Type texts: bool, uint8, int32, int64, uint16, float, double, FString, FName, FText,
	// enum:<path>, struct:<path>, object:<class path>, softobject:<class path>, class:<meta class
	// path>, array:<type text>.
	FSimulatedProperty* AddProperty(FSimulatedType* Owner, const FString& Name, const FString& TypeText, uint64 Flags, FString& OutError);
	// A property of that type text that belongs to no type yet (a function parameter, a
	// Blueprint variable's property); null, with the reason, for an unknown type text.
	std::shared_ptr<FSimulatedProperty> MakeProperty(const FString& Name, const FString& TypeText, uint64 Flags, FString& OutError) const;
	FSimulatedObject* FindOrCreatePackage(const FString& PackageName);
	// A new object with its class's default values; Name must be unique within Outer.
	FSimulatedObject* CreateObject(FSimulatedType* Class, FSimulatedObject* Outer, const FString& Name, FString& OutError);
	// What a native class's constructor makes besides default values (default subobjects, such as
	// a PCG graph's input and output nodes): CreateObject runs it for objects of the class and its
	// subclasses once the object exists. Objects a fixture created before it was set keep what
	// the fixture gave them, as a loaded asset keeps what it saved.
	void SetClassConstructor(const FSimulatedType* Class, TFunction<void(FSimulatedObject&)> Constructor);
	// UObject::Rename: the object (and what it holds) moves to NewOuter under NewName; the old
	// path names nothing afterwards. False, with the reason, when the new path is taken.
	bool RenameObject(FSimulatedObject* Object, FSimulatedObject* NewOuter, const FString& NewName, FString& OutError);
	// Imports text into a top-level property, as the engine's ImportText does.
	bool SetPropertyText(FSimulatedObject* Object, const FString& PropertyName, const FString& Text, FString& OutError);
	// Adds the asset to the registry, with the given tags and the values of its registry-searchable
	// properties.
	void RegisterAsset(FSimulatedObject* Asset, const TArray<FZorvekMCPBridgeAssetTag>& ExtraTags);
	// The registry entry the engine builds for a loaded asset (FAssetData(Object)): identity and a
	// tag per registry-searchable property.
	FZorvekMCPBridgeAssetData MakeAssetData(const FSimulatedObject* Asset) const;
	// Adds a registry entry as it stands (for assets the registry knows but memory does not).
	void AddRegistryEntry(const FZorvekMCPBridgeAssetData& Entry);

	// Queries.
	FSimulatedObject* FindObject(const FString& ObjectPath) const;
	FSimulatedType* FindTypeByPath(const FString& Path) const;
	// By path, or by short name when the text holds no "/", native types first.
	FSimulatedType* FindType(ESimulatedTypeKind Kind, const FString& PathOrShortName) const;
	const std::vector<FZorvekMCPBridgeAssetData>& GetRegistry() const { return Registry; }
	TArray<const FZorvekMCPBridgeAssetData*> FindRegistryEntries(const FString& PackageName) const;
	// Loaded assets the registry has no entry for (created or loaded but never saved and
	// scanned), in creation order. The engine's in-memory queries list them all the same. An
	// asset is a loaded object directly inside a /Game-style package; types are not assets.
	std::vector<const FSimulatedObject*> GetUnregisteredLoadedAssets() const;
	int32 GetObjectCount() const { return (int32)Objects.size(); }
	// Every object, packages and types included, in creation order (outers before what they hold).
	void ForEachObject(TFunctionRef<void(FSimulatedObject*)> Callback) const;

	// Where saved packages go, one JSON file per package (see SimulatedPackageFiles.h); empty
	// means <ProjectSavedDir>/SimulatedContent/.
	void SetSavedPackagesDirectory(const FString& Directory) { SavedPackagesDirectory = Directory; }
	FString GetSavedPackagesDirectory() const;

	// Text forms (SimulatedTextExport.cpp, SimulatedTextImport.cpp). Delimited is the form inside
	// structs and arrays (strings, names and paths quoted).
	FString GetCppType(const FSimulatedProperty& Property) const;
	// The engine's ExportTextItem with no default value and port flags 0: always writes (False,
	// 0, 0.000000, None, an empty text for an empty array). Owner is the exporting object, whose
	// default subobjects are written by name. False only for a property marked unexportable.
	bool ExportValueText(const FSimulatedProperty& Property, const FSimulatedValue& Value, bool bDelimited, FString& OutText, const FSimulatedObject* Owner = nullptr) const;
	// The engine's ImportText at top level: reads a prefix of Text and ignores the rest, writes
	// into Value as it reads (a struct or array that fails halfway keeps what was read before
	// the failure, as in the engine), resolves object paths from Owner outwards. False, with the
	// reason, where the engine returns null.
	bool ImportValueText(const FSimulatedProperty& Property, FSimulatedValue& Value, const FString& Text, FString& OutError, const FSimulatedObject* Owner = nullptr) const;
	// The C++ default of a member: its "default", else a struct of its fields' defaults, else zero.
	FSimulatedValue MakeDefaultValue(const FSimulatedProperty& Property) const;
	// Zero memory of the property's type (structs with every field zero).
	FSimulatedValue MakeZeroValue(const FSimulatedProperty& Property) const;
	// The engine's Identical(A, B): B null compares with zero/empty/None/null.
	bool IsIdenticalValue(const FSimulatedProperty& Property, const FSimulatedValue& A, const FSimulatedValue* B) const;

	// Material expression captions (SimulatedMaterialCaptions.cpp). A template is literal text
	// with placeholders: {Property} is the property's export text, {Property:%.4g} its number
	// through one printf conversion, {Property?Then|Else} Then when the value is true, non-zero
	// or non-empty, else Else (both templates; "|Else" is optional). Property may name a struct
	// field as Property.Field.
	FString FormatCaption(const FSimulatedObject& Expression, const FString& Template) const;
	// Checks a template against a class's properties; false with the reason.
	bool ValidateCaption(const FSimulatedType& Class, const FString& Template, FString& OutError) const;

	// Undo transactions (SimulatedFunctions.cpp), as FScopedTransaction drives them: nested ones
	// merge into the outermost, a change counts only inside one (Modify on a transactional
	// object), and a transaction that recorded nothing is dropped when it ends.
	void BeginTransaction(const FString& Title);
	void EndTransaction();
	void RecordTransactionalChange();
	const std::vector<FSimulatedTransaction>& GetUndoBuffer() const { return UndoBuffer; }

	// The class defaults of Vessa extension classes and their live instances (SimulatedFunctions.h).
	FSimulatedVessaState& GetVessaState();

	// The core classes every object model needs.
	FSimulatedType* GetObjectClass() const { return ObjectClass; }
	FSimulatedType* GetClassClass() const { return ClassClass; }

	// The Blueprints of this editor and the Blueprint editor's operations (SimulatedBlueprint.h).
	FSimulatedBlueprints& GetBlueprints() const { return *Blueprints; }

	// The editor world with its level, viewport and PCG plug-in (SimulatedWorld.h).
	FSimulatedWorld& GetWorld() const { return *World; }

private:
	friend class FSimulatedProjectLoader;
	friend class FSimulatedTextParser;

	FSimulatedType* AddType(ESimulatedTypeKind Kind, const FString& Path, FSimulatedType* MetaClass, FString& OutError);
	bool FindSuperType(ESimulatedTypeKind Kind, const FString& SuperPath, const FString& Path, FSimulatedType*& OutSuper, FString& OutError) const;
	void IndexObject(FSimulatedObject* Object);
	// The first object of that name, of the class or a subclass, in creation order: the engine's
	// search of any package by short name.
	FSimulatedObject* FindObjectByShortName(const FString& Name, const FSimulatedType* Class) const;

	static std::u16string MakeKey(const FString& Text);

	std::vector<std::unique_ptr<FSimulatedObject>> Objects;
	std::unordered_map<std::u16string, FSimulatedObject*> ObjectsByPath;
	std::unordered_multimap<std::u16string, FSimulatedType*> TypesByShortName;
	std::vector<FZorvekMCPBridgeAssetData> Registry;
	std::unordered_multimap<std::u16string, size_t> RegistryByPackage;
	FString ProjectName;
	FString SavedPackagesDirectory;
	std::vector<FSimulatedTransaction> UndoBuffer;
	int32 TransactionDepth = 0;
	FSimulatedTransaction OpenTransaction;
	std::shared_ptr<FSimulatedVessaState> VessaState;
	std::vector<std::pair<const FSimulatedType*, TFunction<void(FSimulatedObject&)>>> ClassConstructors;

	FSimulatedType* ObjectClass = nullptr;
	FSimulatedType* ClassClass = nullptr;
	FSimulatedType* ScriptStructClass = nullptr;
	FSimulatedType* EnumClass = nullptr;
	FSimulatedType* PackageClass = nullptr;
	FSimulatedType* BlueprintGeneratedClassClass = nullptr;
	std::unique_ptr<FSimulatedBlueprints> Blueprints;
	std::unique_ptr<FSimulatedWorld> World;
};

// The fixture the host serves unless --project names another.
FString GetSimulatedSampleProjectFile();

// The value of one hexadecimal digit, or -1.
inline int32 GetHexDigitValue(TCHAR Digit)
{
	const TCHAR Lower = FChar::ToLower(Digit);
	return FChar::IsDigit(Lower) ? Lower - TEXT('0') : (Lower >= TEXT('a') && Lower <= TEXT('f') ? Lower - TEXT('a') + 10 : -1);
}
