// Reads a project fixture into the simulated editor. The format is described in
// SampleProject/README.md. Loading runs in phases so that entries may refer to each other in any
// order within the fixture: types, then their properties and functions, then objects, then
// values, then the contents of Blueprints (which may use any object), then the registry.
#include "SimulatedEditor.h"

#include "SimulatedBlueprintFixtures.h"
#include "SimulatedWorldFixtures.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

#include <fstream>
#include <sstream>

namespace
{
	struct FFlagWord
	{
		const TCHAR* Word;
		uint64 Flags;
	};

	// UPROPERTY specifiers with the flags they set, and the raw flags as CPF_ words.
	const FFlagWord PropertyFlagWords[] = {
		{TEXT("EditAnywhere"), 0x1},
		{TEXT("EditDefaultsOnly"), 0x1 | 0x10000},
		{TEXT("EditInstanceOnly"), 0x1 | 0x800},
		{TEXT("VisibleAnywhere"), 0x1 | 0x20000},
		{TEXT("VisibleDefaultsOnly"), 0x1 | 0x20000 | 0x10000},
		{TEXT("BlueprintReadWrite"), 0x4},
		{TEXT("BlueprintReadOnly"), 0x4 | 0x10},
		{TEXT("AssetRegistrySearchable"), ZorvekMCPBridgePropertyFlags::AssetRegistrySearchable},
		{TEXT("Transient"), ZorvekMCPBridgePropertyFlags::Transient},
		{TEXT("Instanced"), 0x80000 | 0x8},
		{TEXT("Config"), 0x4000},
		{TEXT("CPF_Edit"), ZorvekMCPBridgePropertyFlags::Edit},
		{TEXT("CPF_BlueprintVisible"), ZorvekMCPBridgePropertyFlags::BlueprintVisible},
		{TEXT("CPF_BlueprintReadOnly"), ZorvekMCPBridgePropertyFlags::BlueprintReadOnly},
		{TEXT("CPF_Transient"), ZorvekMCPBridgePropertyFlags::Transient},
		{TEXT("CPF_DisableEditOnInstance"), ZorvekMCPBridgePropertyFlags::DisableEditOnInstance},
		{TEXT("CPF_Deprecated"), ZorvekMCPBridgePropertyFlags::Deprecated},
		{TEXT("CPF_AssetRegistrySearchable"), ZorvekMCPBridgePropertyFlags::AssetRegistrySearchable},
		{TEXT("CPF_EditConst"), 0x20000},
		{TEXT("CPF_EditorOnly"), 0x800000000ull},
		{TEXT("CPF_Protected"), 0x80000000000ull}};

	const FFlagWord ClassFlagWords[] = {
		{TEXT("Abstract"), ZorvekMCPBridgeClassFlags::Abstract},
		{TEXT("Transient"), 0x8},
		{TEXT("EditInlineNew"), 0x1000},
		{TEXT("Interface"), ZorvekMCPBridgeClassFlags::Interface},
		{TEXT("DefaultToInstanced"), 0x200000},
		{TEXT("Deprecated"), ZorvekMCPBridgeClassFlags::Deprecated},
		{TEXT("NewerVersionExists"), ZorvekMCPBridgeClassFlags::NewerVersionExists}};

	// UFUNCTION specifiers as fixture words, with the EFunctionFlags UHT sets for them.
	const FFlagWord FunctionFlagWords[] = {
		{TEXT("callable"), SimulatedFunctionFlags::BlueprintCallable},
		{TEXT("pure"), SimulatedFunctionFlags::BlueprintCallable | SimulatedFunctionFlags::BlueprintPure},
		{TEXT("event"), SimulatedFunctionFlags::Event | SimulatedFunctionFlags::BlueprintEvent},
		{TEXT("native_event"), SimulatedFunctionFlags::Event | SimulatedFunctionFlags::BlueprintEvent | SimulatedFunctionFlags::Native},
		{TEXT("static"), SimulatedFunctionFlags::Static | SimulatedFunctionFlags::Final},
		{TEXT("const"), SimulatedFunctionFlags::Const},
		{TEXT("native"), SimulatedFunctionFlags::Native},
		{TEXT("final"), SimulatedFunctionFlags::Final},
		{TEXT("protected"), SimulatedFunctionFlags::Protected},
		{TEXT("private"), SimulatedFunctionFlags::Private},
		// BlueprintPure=false on a const function: UHT would otherwise make it pure.
		{TEXT("impure"), 0}};

	// How a parameter is declared, as the flags UHT gives it (CPF_Parm is added to all).
	const FFlagWord ParameterFlagWords[] = {
		{TEXT("out"), SimulatedParameterFlags::OutParm},
		{TEXT("ref"), SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReferenceParm},
		{TEXT("const"), SimulatedParameterFlags::ConstParm},
		{TEXT("return"), SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReturnParm}};

	bool ReadFileText(const FString& FilePath, FString& OutText)
	{
		std::ifstream File(UECompatToUtf8(FilePath), std::ios::binary);
		if (!File)
		{
			return false;
		}
		std::stringstream Content;
		Content << File.rdbuf();
		OutText = UECompatFromUtf8(Content.str());
		return true;
	}

	FString GetDirectory(const FString& FilePath)
	{
		int32 SlashIndex = INDEX_NONE;
		return FilePath.FindLastChar(TEXT('/'), SlashIndex) ? FilePath.Left(SlashIndex) : FString(TEXT("."));
	}

	const TArray<TSharedPtr<FJsonValue>>& GetArray(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		static const TArray<TSharedPtr<FJsonValue>> Empty;
		const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
		return Object.IsValid() && Object->TryGetArrayField(Key, Values) ? *Values : Empty;
	}

	FString GetString(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
	{
		FString Value;
		if (Object.IsValid())
		{
			Object->TryGetStringField(Key, Value);
		}
		return Value;
	}

	bool GetBool(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key, bool Default)
	{
		bool Value = Default;
		if (Object.IsValid())
		{
			Object->TryGetBoolField(Key, Value);
		}
		return Value;
	}
}

// The loader works on the documents of one fixture: the file and everything it includes, includes
// first.
class FSimulatedProjectLoader
{
public:
	explicit FSimulatedProjectLoader(FSimulatedEditor& InEditor)
		: Editor(InEditor)
		, BlueprintFixtures(InEditor.GetBlueprints())
	{
	}

	bool AddDocument(const FString& JsonText, const FString& SourceName, const FString& BaseDirectory, int32 IncludeDepth)
	{
		TSharedPtr<FJsonObject> Document;
		if (!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(JsonText), Document) || !Document.IsValid())
		{
			return Fail(SourceName, TEXT("is not a JSON object"));
		}
		if (IncludeDepth > 8)
		{
			return Fail(SourceName, TEXT("includes too deeply (an include cycle?)"));
		}
		for (const TSharedPtr<FJsonValue>& Include : GetArray(Document, TEXT("include")))
		{
			const FString IncludePath = BaseDirectory + TEXT("/") + Include->AsString();
			FString IncludeText;
			if (!ReadFileText(IncludePath, IncludeText))
			{
				return Fail(SourceName, FString::Printf(TEXT("includes %s, which cannot be read"), *IncludePath));
			}
			if (!AddDocument(IncludeText, IncludePath, GetDirectory(IncludePath), IncludeDepth + 1))
			{
				return false;
			}
		}
		FString ProjectName;
		if (Document->TryGetStringField(TEXT("project"), ProjectName))
		{
			Editor.ProjectName = ProjectName;
		}
		Documents.Add({Document, SourceName});
		return true;
	}

	bool Load()
	{
		return CreateTypes() && AddProperties() && CreateObjects() && ImportValues() && BuildBlueprints() && RegisterAssets() && BuildWorld();
	}

	const FString& GetError() const { return Error; }

private:
	struct FDocument
	{
		TSharedPtr<FJsonObject> Json;
		FString SourceName;
	};

	struct FPendingObject
	{
		FSimulatedObject* Object;
		TSharedPtr<FJsonObject> Json;
		FString Where;
	};

	struct FPendingDefault
	{
		FSimulatedProperty* Property;
		FString Text;
		FString Where;
	};

	bool Fail(const FString& Where, const FString& Message)
	{
		Error = FString::Printf(TEXT("%s %s."), *Where, *Message);
		return false;
	}

	static FString Describe(const FString& SourceName, const TCHAR* Section, int32 Index, const FString& Name)
	{
		return FString::Printf(TEXT("%s: %s[%d] (%s)"), *SourceName, Section, Index, *Name);
	}

	bool CreateTypes()
	{
		for (const FDocument& Document : Documents)
		{
			const TArray<TSharedPtr<FJsonValue>>& Enums = GetArray(Document.Json, TEXT("enums"));
			for (int32 Index = 0; Index < Enums.Num(); ++Index)
			{
				const TSharedPtr<FJsonObject> Entry = Enums[Index]->AsObject();
				const FString Path = GetString(Entry, TEXT("path"));
				TArray<FString> Names;
				for (const TSharedPtr<FJsonValue>& Name : GetArray(Entry, TEXT("names")))
				{
					Names.Add(Name->AsString());
				}
				FString TypeError;
				if (!Editor.AddEnum(Path, Names, GetBool(Entry, TEXT("enum_class"), false), TypeError))
				{
					return Fail(Describe(Document.SourceName, TEXT("enums"), Index, Path), TypeError);
				}
			}
			const TArray<TSharedPtr<FJsonValue>>& Structs = GetArray(Document.Json, TEXT("structs"));
			for (int32 Index = 0; Index < Structs.Num(); ++Index)
			{
				const TSharedPtr<FJsonObject> Entry = Structs[Index]->AsObject();
				const FString Path = GetString(Entry, TEXT("path"));
				FString TypeError;
				FSimulatedType* Struct = Editor.AddStruct(Path, GetString(Entry, TEXT("super")), TypeError);
				if (!Struct)
				{
					return Fail(Describe(Document.SourceName, TEXT("structs"), Index, Path), TypeError);
				}
				const FString TextForm = GetString(Entry, TEXT("text_form"));
				if (!ReadStructTextForm(TextForm, Struct->StructTextForm))
				{
					return Fail(Describe(Document.SourceName, TEXT("structs"), Index, Path), FString::Printf(TEXT("has an unknown text_form '%s'"), *TextForm));
				}
				TypesWithProperties.Add({Struct, Entry, Describe(Document.SourceName, TEXT("structs"), Index, Path)});
			}
			const TArray<TSharedPtr<FJsonValue>>& Classes = GetArray(Document.Json, TEXT("classes"));
			for (int32 Index = 0; Index < Classes.Num(); ++Index)
			{
				const TSharedPtr<FJsonObject> Entry = Classes[Index]->AsObject();
				const FString Path = GetString(Entry, TEXT("path"));
				const FString Where = Describe(Document.SourceName, TEXT("classes"), Index, Path);
				uint64 Flags = 0;
				if (!ReadFlags(Entry, ClassFlagWords, UE_ARRAY_COUNT(ClassFlagWords), Where, Flags))
				{
					return false;
				}
				FString TypeError;
				FSimulatedType* Class = Editor.AddClass(Path, GetString(Entry, TEXT("super")), (uint32)Flags, TypeError);
				if (!Class)
				{
					return Fail(Where, TypeError);
				}
				const TSharedPtr<FJsonObject>* ExpressionJson = nullptr;
				if (Entry->TryGetObjectField(TEXT("material_expression"), ExpressionJson))
				{
					Class->ExpressionInfo = ReadExpressionInfo(*ExpressionJson);
				}
				TypesWithProperties.Add({Class, Entry, Where});
			}
		}
		return true;
	}

	static bool ReadStructTextForm(const FString& Word, ESimulatedStructTextForm& OutForm)
	{
		struct FFormWord
		{
			const TCHAR* Word;
			ESimulatedStructTextForm Form;
		};
		const FFormWord Forms[] = {{TEXT(""), ESimulatedStructTextForm::Fields}, {TEXT("atomic"), ESimulatedStructTextForm::Atomic}, {TEXT("guid"), ESimulatedStructTextForm::Guid},
			{TEXT("verbatim"), ESimulatedStructTextForm::Verbatim}};
		for (const FFormWord& Form : Forms)
		{
			if (Word.Equals(Form.Word, ESearchCase::CaseSensitive))
			{
				OutForm = Form.Form;
				return true;
			}
		}
		return false;
	}

	static std::shared_ptr<FSimulatedExpressionClassInfo> ReadExpressionInfo(const TSharedPtr<FJsonObject>& Json)
	{
		std::shared_ptr<FSimulatedExpressionClassInfo> Info = std::make_shared<FSimulatedExpressionClassInfo>();
		for (const TSharedPtr<FJsonValue>& Line : GetArray(Json, TEXT("caption")))
		{
			Info->CaptionLines.Add(Line->AsString());
		}
		for (const TSharedPtr<FJsonValue>& OutputValue : GetArray(Json, TEXT("outputs")))
		{
			const TSharedPtr<FJsonObject> OutputJson = OutputValue->AsObject();
			FZorvekMCPBridgeMaterialOutputSnapshot Output;
			Output.OutputName = GetString(OutputJson, TEXT("name"));
			const TArray<TSharedPtr<FJsonValue>>& Mask = GetArray(OutputJson, TEXT("mask"));
			int32* Targets[] = {&Output.Mask.Mask, &Output.Mask.MaskR, &Output.Mask.MaskG, &Output.Mask.MaskB, &Output.Mask.MaskA};
			for (int32 Index = 0; Index < Mask.Num() && Index < 5; ++Index)
			{
				*Targets[Index] = (int32)Mask[Index]->AsNumber();
			}
			Info->Outputs.Add(Output);
		}
		Info->bParameter = GetBool(Json, TEXT("parameter"), false);
		return Info;
	}

	bool ReadFlags(const TSharedPtr<FJsonObject>& Entry, const FFlagWord* Words, int32 WordCount, const FString& Where, uint64& OutFlags)
	{
		OutFlags = 0;
		for (const TSharedPtr<FJsonValue>& FlagValue : GetArray(Entry, TEXT("flags")))
		{
			const FString Word = FlagValue->AsString();
			bool bKnown = false;
			for (int32 Index = 0; Index < WordCount; ++Index)
			{
				if (Word.Equals(Words[Index].Word, ESearchCase::CaseSensitive))
				{
					OutFlags |= Words[Index].Flags;
					bKnown = true;
				}
			}
			if (!bKnown)
			{
				return Fail(Where, FString::Printf(TEXT("has an unknown flag '%s'"), *Word));
			}
		}
		return true;
	}

	bool AddProperties()
	{
		for (const FPendingObject& Pending : TypesWithProperties)
		{
			FSimulatedType* Type = static_cast<FSimulatedType*>(Pending.Object);
			const TArray<TSharedPtr<FJsonValue>>& Properties = GetArray(Pending.Json, TEXT("properties"));
			for (int32 Index = 0; Index < Properties.Num(); ++Index)
			{
				const TSharedPtr<FJsonObject> PropertyJson = Properties[Index]->AsObject();
				const FString Where = FString::Printf(TEXT("%s property %s"), *Pending.Where, *GetString(PropertyJson, TEXT("name")));
				uint64 Flags = 0;
				if (!ReadFlags(PropertyJson, PropertyFlagWords, UE_ARRAY_COUNT(PropertyFlagWords), Where, Flags))
				{
					return false;
				}
				FString PropertyError;
				FSimulatedProperty* Property = Editor.AddProperty(Type, GetString(PropertyJson, TEXT("name")), GetString(PropertyJson, TEXT("type")), Flags, PropertyError);
				if (!Property)
				{
					return Fail(Where, PropertyError);
				}
				Property->bExportable = GetBool(PropertyJson, TEXT("exportable"), true);
				FString DefaultText;
				if (PropertyJson->TryGetStringField(TEXT("default"), DefaultText))
				{
					PendingDefaults.Add({Property, DefaultText, Where});
				}
			}
		}
		for (const FPendingObject& Pending : TypesWithProperties)
		{
			if (!AddFunctions(static_cast<FSimulatedType*>(Pending.Object), Pending.Json, Pending.Where))
			{
				return false;
			}
		}
		// Functions for classes another file defines, after the class's own.
		for (const FDocument& Document : Documents)
		{
			const TArray<TSharedPtr<FJsonValue>>& Entries = GetArray(Document.Json, TEXT("class_functions"));
			for (int32 Index = 0; Index < Entries.Num(); ++Index)
			{
				const TSharedPtr<FJsonObject> Entry = Entries[Index]->AsObject();
				const FString ClassPath = GetString(Entry, TEXT("class"));
				const FString Where = Describe(Document.SourceName, TEXT("class_functions"), Index, ClassPath);
				FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
				if (!Class || Class->Kind != ESimulatedTypeKind::Class)
				{
					return Fail(Where, FString::Printf(TEXT("names class %s, which is not defined"), *ClassPath));
				}
				if (!AddFunctions(Class, Entry, Where))
				{
					return false;
				}
			}
		}
		// Subtypes were created before their supers had all their properties.
		for (const std::unique_ptr<FSimulatedObject>& Object : Editor.Objects)
		{
			if (FSimulatedType* Type = dynamic_cast<FSimulatedType*>(Object.get()))
			{
				Type->RebuildPropertyList();
			}
		}
		// Defaults are read once every type is complete, in fixture order: a struct's defaults
		// count for members declared after it.
		for (const FPendingDefault& Pending : PendingDefaults)
		{
			FSimulatedValue Value = Editor.MakeDefaultValue(*Pending.Property);
			FString ValueError;
			if (!Editor.ImportValueText(*Pending.Property, Value, Pending.Text, ValueError))
			{
				return Fail(Pending.Where, FString::Printf(TEXT("default: %s"), *ValueError));
			}
			Pending.Property->Default = std::make_shared<FSimulatedValue>(Value);
		}
		for (const FPendingObject& Pending : TypesWithProperties)
		{
			const FSimulatedType* Type = static_cast<const FSimulatedType*>(Pending.Object);
			for (const FString& Line : Type->ExpressionInfo ? Type->ExpressionInfo->CaptionLines : TArray<FString>())
			{
				FString CaptionError;
				if (!Editor.ValidateCaption(*Type, Line, CaptionError))
				{
					return Fail(Pending.Where, CaptionError.LeftChop(1));
				}
			}
		}
		return true;
	}

	bool AddFunctions(FSimulatedType* Owner, const TSharedPtr<FJsonObject>& Json, const FString& OwnerWhere)
	{
		const TArray<TSharedPtr<FJsonValue>>& Functions = GetArray(Json, TEXT("functions"));
		if (Functions.Num() > 0 && Owner->Kind != ESimulatedTypeKind::Class)
		{
			return Fail(OwnerWhere, TEXT("declares functions, which only classes have"));
		}
		for (int32 Index = 0; Index < Functions.Num(); ++Index)
		{
			const TSharedPtr<FJsonObject> FunctionJson = Functions[Index]->AsObject();
			std::shared_ptr<FSimulatedFunction> Function = std::make_shared<FSimulatedFunction>();
			Function->Name = GetString(FunctionJson, TEXT("name"));
			Function->Owner = Owner;
			const FString Where = FString::Printf(TEXT("%s function %s"), *OwnerWhere, *Function->Name);
			if (!FunctionJson.IsValid() || Function->Name.IsEmpty())
			{
				return Fail(Where, TEXT("needs a name"));
			}
			for (const std::shared_ptr<FSimulatedFunction>& Existing : Owner->Functions)
			{
				if (Existing->Name.Equals(Function->Name, ESearchCase::IgnoreCase))
				{
					return Fail(Where, TEXT("is declared twice"));
				}
			}
			uint64 Flags = 0;
			if (!ReadFlags(FunctionJson, FunctionFlagWords, UE_ARRAY_COUNT(FunctionFlagWords), Where, Flags))
			{
				return false;
			}
			if ((Flags & (SimulatedFunctionFlags::Protected | SimulatedFunctionFlags::Private)) == 0)
			{
				Flags |= SimulatedFunctionFlags::Public;
			}
			// UHT makes a const BlueprintCallable function pure unless told otherwise.
			const bool bImpure = HasWord(FunctionJson, TEXT("flags"), TEXT("impure"));
			if ((Flags & SimulatedFunctionFlags::Const) && (Flags & SimulatedFunctionFlags::BlueprintCallable) && !bImpure)
			{
				Flags |= SimulatedFunctionFlags::BlueprintPure;
			}
			const TArray<TSharedPtr<FJsonValue>>& Parameters = GetArray(FunctionJson, TEXT("parameters"));
			for (int32 ParameterIndex = 0; ParameterIndex < Parameters.Num(); ++ParameterIndex)
			{
				if (!AddParameter(*Function, Parameters[ParameterIndex]->AsObject(), ParameterIndex == Parameters.Num() - 1, Where))
				{
					return false;
				}
				if (Function->Parameters.back()->Flags & SimulatedParameterFlags::OutParm)
				{
					Flags |= SimulatedFunctionFlags::HasOutParms;
				}
			}
			Function->FunctionFlags = (uint32)Flags;
			const TSharedPtr<FJsonObject>* MetaData = nullptr;
			if (FunctionJson->TryGetObjectField(TEXT("metadata"), MetaData))
			{
				for (const TPair<FString, TSharedPtr<FJsonValue>>& Entry : (*MetaData)->Values)
				{
					FString Value;
					if (!Entry.Value.IsValid() || !Entry.Value->TryGetString(Value))
					{
						return Fail(Where, FString::Printf(TEXT("gives metadata %s a value that is not text"), *Entry.Key));
					}
					Function->MetaData.Add(Entry.Key, Value);
				}
			}
			if (!CheckParameterMetaData(*Function, Where))
			{
				return false;
			}
			Owner->Functions.push_back(Function);
		}
		return true;
	}

	bool AddParameter(FSimulatedFunction& Function, const TSharedPtr<FJsonObject>& Json, bool bLast, const FString& FunctionWhere)
	{
		const FString Name = GetString(Json, TEXT("name"));
		const FString Where = FString::Printf(TEXT("%s parameter %s"), *FunctionWhere, *Name);
		if (!Json.IsValid() || Name.IsEmpty())
		{
			return Fail(Where, TEXT("needs a name"));
		}
		for (const std::shared_ptr<FSimulatedProperty>& Existing : Function.Parameters)
		{
			if (Existing->Name.Equals(Name, ESearchCase::IgnoreCase))
			{
				return Fail(Where, TEXT("is declared twice"));
			}
		}
		uint64 Flags = 0;
		if (!ReadFlags(Json, ParameterFlagWords, UE_ARRAY_COUNT(ParameterFlagWords), Where, Flags))
		{
			return false;
		}
		if (Flags & SimulatedParameterFlags::ReturnParm)
		{
			// UHT names the return value ReturnValue and declares it last.
			if (!Name.Equals(TEXT("ReturnValue"), ESearchCase::CaseSensitive) || !bLast || Flags != (SimulatedParameterFlags::OutParm | SimulatedParameterFlags::ReturnParm))
			{
				return Fail(Where, TEXT("is a return value, which is named ReturnValue, comes last and has no other flags"));
			}
		}
		FString TypeError;
		std::shared_ptr<FSimulatedProperty> Parameter = Editor.MakeProperty(Name, GetString(Json, TEXT("type")), Flags | SimulatedParameterFlags::Parm, TypeError);
		if (!Parameter)
		{
			return Fail(Where, TypeError.LeftChop(1));
		}
		Function.Parameters.push_back(Parameter);
		return true;
	}

	// Metadata that names parameters must name ones the function has.
	bool CheckParameterMetaData(const FSimulatedFunction& Function, const FString& Where)
	{
		const auto HasParameter = [&Function](const FString& Name)
		{
			for (const std::shared_ptr<FSimulatedProperty>& Parameter : Function.Parameters)
			{
				if (Parameter->Name.Equals(Name, ESearchCase::IgnoreCase))
				{
					return true;
				}
			}
			return false;
		};
		for (const TPair<FString, FString>& Entry : Function.MetaData)
		{
			const bool bNamesParameter = Entry.Key == TEXT("WorldContext") || Entry.Key == TEXT("LatentInfo");
			if (bNamesParameter && !HasParameter(Entry.Value))
			{
				return Fail(Where, FString::Printf(TEXT("has %s metadata naming %s, which is not a parameter"), *Entry.Key, *Entry.Value));
			}
			if (Entry.Key.StartsWith(TEXT("CPP_Default_"), ESearchCase::CaseSensitive) && !HasParameter(Entry.Key.Mid(12)))
			{
				return Fail(Where, FString::Printf(TEXT("has a default for %s, which is not a parameter"), *Entry.Key.Mid(12)));
			}
		}
		return true;
	}

	static bool HasWord(const TSharedPtr<FJsonObject>& Json, const TCHAR* Key, const TCHAR* Word)
	{
		for (const TSharedPtr<FJsonValue>& Value : GetArray(Json, Key))
		{
			if (Value->AsString().Equals(Word, ESearchCase::CaseSensitive))
			{
				return true;
			}
		}
		return false;
	}

	bool CreateObject(const TSharedPtr<FJsonObject>& Json, FSimulatedObject* Outer, const FString& DefaultName, const FString& Where)
	{
		const TSharedPtr<FJsonObject>* BlueprintJson = nullptr;
		if (Outer->IsPackage() && Json->TryGetObjectField(TEXT("blueprint"), BlueprintJson))
		{
			return CreateBlueprintAsset(Json, *BlueprintJson, Outer, DefaultName, Where);
		}
		const FString ClassPath = GetString(Json, TEXT("class"));
		FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
		if (!Class || Class->Kind != ESimulatedTypeKind::Class)
		{
			return Fail(Where, FString::Printf(TEXT("has class %s, which is not defined"), *ClassPath));
		}
		FString Name = GetString(Json, TEXT("name"));
		if (Name.IsEmpty())
		{
			Name = DefaultName;
		}
		FString ObjectError;
		FSimulatedObject* Object = Editor.CreateObject(Class, Outer, Name, ObjectError);
		if (!Object)
		{
			return Fail(Where, ObjectError);
		}
		Object->bLoadable = GetBool(Json, TEXT("loadable"), true);
		Object->bDefaultSubobject = GetBool(Json, TEXT("default_subobject"), false);
		PendingValues.Add({Object, Json, Where});
		const TArray<TSharedPtr<FJsonValue>>& Subobjects = GetArray(Json, TEXT("subobjects"));
		for (int32 Index = 0; Index < Subobjects.Num(); ++Index)
		{
			const TSharedPtr<FJsonObject> Subobject = Subobjects[Index]->AsObject();
			if (!CreateObject(Subobject, Object, FString(), FString::Printf(TEXT("%s subobject %s"), *Where, *GetString(Subobject, TEXT("name")))))
			{
				return false;
			}
		}
		return true;
	}

	// A Blueprint asset is made by the Blueprint editor's CreateBlueprint; its contents follow
	// once every object of the fixture exists.
	bool CreateBlueprintAsset(const TSharedPtr<FJsonObject>& Json, const TSharedPtr<FJsonObject>& BlueprintJson, FSimulatedObject* Package, const FString& Name, const FString& Where)
	{
		if (GetArray(Json, TEXT("subobjects")).Num() > 0)
		{
			return Fail(Where, TEXT("is a Blueprint, whose subobjects come from its blueprint entry"));
		}
		FString BlueprintError;
		FSimulatedObject* Object = BlueprintFixtures.CreateBlueprint(Package, Name, BlueprintJson, BlueprintError);
		if (!Object)
		{
			return Fail(Where, BlueprintError);
		}
		PendingValues.Add({Object, Json, Where});
		PendingBlueprints.Add({Object, BlueprintJson, Where});
		return true;
	}

	bool BuildBlueprints()
	{
		for (const FPendingObject& Pending : PendingBlueprints)
		{
			FString BlueprintError;
			if (!BlueprintFixtures.BuildContents(Pending.Object, Pending.Json, BlueprintError))
			{
				return Fail(Pending.Where, BlueprintError);
			}
		}
		return true;
	}

	// The editor world and its actors, once every class, asset and Blueprint exists; the map comes
	// last in the registry.
	bool BuildWorld()
	{
		TArray<TPair<TSharedPtr<FJsonObject>, FString>> WorldDocuments;
		for (const FDocument& Document : Documents)
		{
			WorldDocuments.Add({Document.Json, Document.SourceName});
		}
		return SimulatedWorldFixtures::Load(Editor, WorldDocuments, Error);
	}

	bool CreateObjects()
	{
		for (const FDocument& Document : Documents)
		{
			const TArray<TSharedPtr<FJsonValue>>& Assets = GetArray(Document.Json, TEXT("assets"));
			for (int32 Index = 0; Index < Assets.Num(); ++Index)
			{
				const TSharedPtr<FJsonObject> Entry = Assets[Index]->AsObject();
				const FString PackageName = GetString(Entry, TEXT("package"));
				const FString Where = Describe(Document.SourceName, TEXT("assets"), Index, PackageName);
				if (!PackageName.StartsWith(TEXT("/")) || PackageName.Contains(TEXT(".")))
				{
					return Fail(Where, TEXT("needs a package name such as /Game/Folder/Asset"));
				}
				FSimulatedObject* Package = Editor.FindOrCreatePackage(PackageName);
				if (!Package)
				{
					return Fail(Where, TEXT("names a package that is already an object"));
				}
				int32 SlashIndex = INDEX_NONE;
				PackageName.FindLastChar(TEXT('/'), SlashIndex);
				const int32 FirstObject = PendingValues.Num();
				if (!CreateObject(Entry, Package, PackageName.Mid(SlashIndex + 1), Where))
				{
					return false;
				}
				if (GetBool(Entry, TEXT("in_registry"), true))
				{
					PendingAssets.Add({PendingValues[FirstObject].Object, Entry, Where});
				}
			}
			const TArray<TSharedPtr<FJsonValue>>& RegistryOnly = GetArray(Document.Json, TEXT("registry_only"));
			for (const TSharedPtr<FJsonValue>& Value : RegistryOnly)
			{
				const TSharedPtr<FJsonObject> Entry = Value->AsObject();
				FZorvekMCPBridgeAssetData Asset;
				Asset.PackageName = GetString(Entry, TEXT("package"));
				int32 SlashIndex = INDEX_NONE;
				Asset.PackageName.FindLastChar(TEXT('/'), SlashIndex);
				Asset.PackagePath = Asset.PackageName.Left(SlashIndex);
				Asset.AssetName = Asset.PackageName.Mid(SlashIndex + 1);
				Asset.AssetClassPath = GetString(Entry, TEXT("class"));
				Asset.ObjectPath = Asset.PackageName + TEXT(".") + Asset.AssetName;
				RegistryOnlyEntries.Add(Asset);
			}
		}
		return true;
	}

	bool ImportValues()
	{
		for (const FPendingObject& Pending : PendingValues)
		{
			const TSharedPtr<FJsonObject>* Values = nullptr;
			if (!Pending.Json->TryGetObjectField(TEXT("values"), Values))
			{
				continue;
			}
			for (const TPair<FString, TSharedPtr<FJsonValue>>& Value : (*Values)->Values)
			{
				FString Text;
				if (!Value.Value.IsValid() || !Value.Value->TryGetString(Text))
				{
					return Fail(Pending.Where, FString::Printf(TEXT("gives %s a value that is not text, a number or a bool"), *Value.Key));
				}
				FString ValueError;
				if (!Editor.SetPropertyText(Pending.Object, Value.Key, Text, ValueError))
				{
					return Fail(Pending.Where, FString::Printf(TEXT("value %s: %s"), *Value.Key, *ValueError));
				}
			}
		}
		return true;
	}

	bool RegisterAssets()
	{
		for (const FPendingObject& Pending : PendingAssets)
		{
			TArray<FZorvekMCPBridgeAssetTag> Tags;
			const TSharedPtr<FJsonObject>* TagsJson = nullptr;
			if (Pending.Json->TryGetObjectField(TEXT("tags"), TagsJson))
			{
				for (const TPair<FString, TSharedPtr<FJsonValue>>& Tag : (*TagsJson)->Values)
				{
					Tags.Add({Tag.Key, Tag.Value->AsString()});
				}
			}
			Editor.RegisterAsset(Pending.Object, Tags);
		}
		for (const FZorvekMCPBridgeAssetData& Entry : RegistryOnlyEntries)
		{
			Editor.AddRegistryEntry(Entry);
		}
		return true;
	}

	FSimulatedEditor& Editor;
	FSimulatedBlueprintFixtures BlueprintFixtures;
	TArray<FDocument> Documents;
	TArray<FPendingObject> TypesWithProperties;
	TArray<FPendingDefault> PendingDefaults;
	TArray<FPendingObject> PendingValues;
	TArray<FPendingObject> PendingAssets;
	TArray<FPendingObject> PendingBlueprints;
	TArray<FZorvekMCPBridgeAssetData> RegistryOnlyEntries;
	FString Error;
};

bool FSimulatedEditor::LoadProjectFile(const FString& FilePath, FString& OutError)
{
	FString JsonText;
	if (!ReadFileText(FilePath, JsonText))
	{
		OutError = FString::Printf(TEXT("Cannot read the project file %s."), *FilePath);
		return false;
	}
	FSimulatedProjectLoader Loader(*this);
	if (!Loader.AddDocument(JsonText, FilePath, GetDirectory(FilePath), 0) || !Loader.Load())
	{
		OutError = Loader.GetError();
		return false;
	}
	return true;
}

bool FSimulatedEditor::LoadProjectJson(const FString& JsonText, const FString& BaseDirectory, FString& OutError)
{
	FSimulatedProjectLoader Loader(*this);
	if (!Loader.AddDocument(JsonText, TEXT("project"), BaseDirectory, 0) || !Loader.Load())
	{
		OutError = Loader.GetError();
		return false;
	}
	return true;
}
