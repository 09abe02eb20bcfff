// The Blueprint type vocabulary: what type texts mean, how they fail, and the JSON a client
// reads back.
#include "Blueprint/ZorvekMCPBridgePinTypes.h"
#include "Dom/JsonValue.h"
#include "ZorvekTestSupport.h"

namespace
{
	// FString's == ignores case; the texts here are compared exactly.
	::testing::AssertionResult IsSameText(const char* ActualExpression, const char* ExpectedExpression, const FString& Actual, const FString& Expected)
	{
		if (Actual.Equals(Expected, ESearchCase::CaseSensitive))
		{
			return ::testing::AssertionSuccess();
		}
		return ::testing::AssertionFailure() << ActualExpression << " is \"" << UECompatToUtf8(Actual) << "\"\n" << ExpectedExpression << " is \"" << UECompatToUtf8(Expected) << "\"";
	}

	::testing::AssertionResult AreSameTexts(const char* ActualExpression, const char* ExpectedExpression, const TArray<FString>& Actual, const TArray<FString>& Expected)
	{
		const FString ActualJoined = FString::Join(Actual, TEXT(", "));
		return IsSameText(ActualExpression, ExpectedExpression, ActualJoined, FString::Join(Expected, TEXT(", ")));
	}
}

#define EXPECT_TEXT(Actual, Expected) EXPECT_PRED_FORMAT2(IsSameText, Actual, Expected)
#define EXPECT_TEXTS(Actual, Expected) EXPECT_PRED_FORMAT2(AreSameTexts, Actual, Expected)

namespace
{
	enum class EFakeTypeKind
	{
		Class,
		Struct,
		Enum
	};

	// A few type objects of a project: engine classes, a Blueprint class, an interface (a class to
	// the object system), a user struct and an enum.
	class FFakeTypeLookup : public IZorvekMCPBridgeTypeLookup
	{
	public:
		FFakeTypeLookup()
		{
			Add(TEXT("/Script/Engine.Actor"), TEXT("Actor"), EFakeTypeKind::Class);
			Add(TEXT("/Script/Engine.StaticMesh"), TEXT("StaticMesh"), EFakeTypeKind::Class);
			Add(TEXT("/Game/Blueprints/BP_Door.BP_Door_C"), TEXT("BP_Door_C"), EFakeTypeKind::Class);
			Add(TEXT("/Script/Engine.Interactable"), TEXT("Interactable"), EFakeTypeKind::Class);
			Add(TEXT("/Game/Data/S_Loot.S_Loot"), TEXT("S_Loot"), EFakeTypeKind::Struct);
			Add(TEXT("/Script/Engine.ECollisionChannel"), TEXT("ECollisionChannel"), EFakeTypeKind::Enum);
		}

		bool LoadClass(const FString& ClassPath, FZorvekMCPBridgeTypeIdentity& OutClass) const override
		{
			RequestedClassPaths.Add(ClassPath);
			return Find(ClassPath, EFakeTypeKind::Class, OutClass);
		}
		bool FindStruct(const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutStruct) const override
		{
			return Find(PathOrName, EFakeTypeKind::Struct, OutStruct);
		}
		bool FindEnum(const FString& PathOrName, FZorvekMCPBridgeTypeIdentity& OutEnum) const override
		{
			return Find(PathOrName, EFakeTypeKind::Enum, OutEnum);
		}

		mutable TArray<FString> RequestedClassPaths;

	private:
		struct FEntry
		{
			FZorvekMCPBridgeTypeIdentity Identity;
			EFakeTypeKind Kind;
		};

		void Add(const TCHAR* Path, const TCHAR* Name, EFakeTypeKind Kind)
		{
			Entries.Add({FZorvekMCPBridgeTypeIdentity(Path, Name), Kind});
		}

		bool Find(const FString& PathOrName, EFakeTypeKind Kind, FZorvekMCPBridgeTypeIdentity& OutIdentity) const
		{
			for (const FEntry& Entry : Entries)
			{
				if (Entry.Kind == Kind && (Entry.Identity.PathName == PathOrName || Entry.Identity.Name == PathOrName))
				{
					OutIdentity = Entry.Identity;
					return true;
				}
			}
			return false;
		}

		TArray<FEntry> Entries;
	};

	const FString SupportedTypesTail = TEXT(". Supported types: bool, int, float, string, name, text, vector, rotator, transform, object, class, arrays like float[] or array<float>, sets like set<name>, and maps like map<name,string>.");

	FString UnsupportedMessage(const FString& TypeText)
	{
		return FString(TEXT("Unsupported Blueprint variable type '")) + TypeText + TEXT("'") + SupportedTypesTail;
	}

	FString MapMessage(const FString& TypeText)
	{
		return FString(TEXT("Unsupported Blueprint map variable type '")) + TypeText + TEXT("'. Use map<key,value>, for example map<name,string>.");
	}

	FString NestedMessage(const FString& TypeText)
	{
		return FString(TEXT("Nested Blueprint containers are not supported for variable type '")) + TypeText + TEXT("'.");
	}

	TArray<FString> KeysOf(const TSharedPtr<FJsonObject>& Object)
	{
		TArray<FString> Keys;
		for (const auto& Pair : Object->Values)
		{
			Keys.Add(Pair.Key);
		}
		return Keys;
	}

	TArray<FString> Keys(std::initializer_list<const TCHAR*> Names)
	{
		TArray<FString> Result;
		for (const TCHAR* Name : Names)
		{
			Result.Add(Name);
		}
		return Result;
	}

	class PinTypeParseTest : public ::testing::Test
	{
	protected:
		struct FParsed
		{
			bool bOk = false;
			FZorvekMCPBridgePinType PinType;
			FString TypeString;
			FString Error;
		};

		FParsed Parse(const FString& TypeText, const FString& AllowedClassPath = FString())
		{
			FParsed Result;
			Result.bOk = ZorvekMCPBridgePinTypes::ParseBlueprintVariableType(Lookup, TypeText, AllowedClassPath, Result.PinType, Result.TypeString, Result.Error);
			return Result;
		}

		FFakeTypeLookup Lookup;
	};
}

TEST_F(PinTypeParseTest, EveryAcceptedWordGivesItsCategoryAndNormalisedWord)
{
	struct FCase
	{
		const TCHAR* Text;
		const TCHAR* Category;
		const TCHAR* SubCategory;
		const TCHAR* SubCategoryObject;
		const TCHAR* Word;
	};
	const FCase Cases[] =
	{
		{TEXT("bool"), TEXT("bool"), TEXT("None"), TEXT(""), TEXT("bool")},
		{TEXT("Boolean"), TEXT("bool"), TEXT("None"), TEXT(""), TEXT("bool")},
		{TEXT("INT"), TEXT("int"), TEXT("None"), TEXT(""), TEXT("int")},
		{TEXT("integer"), TEXT("int"), TEXT("None"), TEXT(""), TEXT("int")},
		{TEXT("  Float \t"), TEXT("real"), TEXT("float"), TEXT(""), TEXT("float")},
		{TEXT("REAL"), TEXT("real"), TEXT("float"), TEXT(""), TEXT("float")},
		{TEXT("String"), TEXT("string"), TEXT("None"), TEXT(""), TEXT("string")},
		{TEXT("name"), TEXT("name"), TEXT("None"), TEXT(""), TEXT("name")},
		{TEXT("Text"), TEXT("text"), TEXT("None"), TEXT(""), TEXT("text")},
		{TEXT("Vector"), TEXT("struct"), TEXT("None"), TEXT("/Script/CoreUObject.Vector"), TEXT("vector")},
		{TEXT("rotator"), TEXT("struct"), TEXT("None"), TEXT("/Script/CoreUObject.Rotator"), TEXT("rotator")},
		{TEXT("Transform"), TEXT("struct"), TEXT("None"), TEXT("/Script/CoreUObject.Transform"), TEXT("transform")},
		{TEXT("object"), TEXT("object"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("object")},
		{TEXT("Object_Reference"), TEXT("object"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("object")},
		{TEXT("object-reference"), TEXT("object"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("object")},
		{TEXT("Object Reference"), TEXT("object"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("object")},
		{TEXT("class"), TEXT("class"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("class")},
		{TEXT("class (reference)"), TEXT("class"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("class")},
		{TEXT("ClassReference"), TEXT("class"), TEXT("None"), TEXT("/Script/Engine.Actor"), TEXT("class")},
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(UECompatToUtf8(Case.Text));
		const FParsed Parsed = Parse(Case.Text);
		ASSERT_TRUE(Parsed.bOk) << UECompatToUtf8(Parsed.Error);
		EXPECT_TEXT(Parsed.PinType.PinCategory.ToString(), Case.Category);
		EXPECT_TEXT(Parsed.PinType.PinSubCategory.ToString(), Case.SubCategory);
		EXPECT_TEXT(Parsed.PinType.PinSubCategoryObject.PathName, Case.SubCategoryObject);
		EXPECT_EQ(Parsed.PinType.ContainerType, EZorvekMCPBridgePinContainerType::None);
		EXPECT_TEXT(Parsed.TypeString, Case.Word);
	}
}

TEST_F(PinTypeParseTest, WordsOutsideTheTableAreRefusedQuotingTheTextAsPassed)
{
	const TCHAR* Refused[] = {TEXT("double"), TEXT("int64"), TEXT("byte"), TEXT("struct"), TEXT("  Double "), TEXT(""), TEXT("   "), TEXT("[]"),
		TEXT("array<>"), TEXT("set<>"), TEXT("vec tor3"), TEXT("map <name,string>"), TEXT("softobject")};
	for (const TCHAR* Text : Refused)
	{
		SCOPED_TRACE(UECompatToUtf8(Text));
		const FParsed Parsed = Parse(Text);
		EXPECT_FALSE(Parsed.bOk);
		EXPECT_TEXT(Parsed.Error, UnsupportedMessage(Text));
	}
}

TEST_F(PinTypeParseTest, ArraysInEitherSpellingNormaliseToTheShortForm)
{
	for (const TCHAR* Text : {TEXT("array<Vector>"), TEXT("vector[]"), TEXT(" Array< vector > "), TEXT("Vector []")})
	{
		SCOPED_TRACE(UECompatToUtf8(Text));
		const FParsed Parsed = Parse(Text);
		ASSERT_TRUE(Parsed.bOk) << UECompatToUtf8(Parsed.Error);
		EXPECT_EQ(Parsed.PinType.ContainerType, EZorvekMCPBridgePinContainerType::Array);
		EXPECT_EQ(Parsed.PinType.PinCategory, FZorvekMCPBridgePinCategories::PC_Struct);
		EXPECT_TEXT(Parsed.PinType.PinSubCategoryObject.PathName, TEXT("/Script/CoreUObject.Vector"));
		EXPECT_TEXT(Parsed.TypeString, TEXT("vector[]"));
	}
	EXPECT_TEXT(Parse(TEXT("array<float>")).TypeString, TEXT("float[]"));
	EXPECT_TEXT(Parse(TEXT("Object_Reference[]")).TypeString, TEXT("object[]"));
}

TEST_F(PinTypeParseTest, SetsKeepTheLongForm)
{
	for (const TCHAR* Text : {TEXT("set<name>"), TEXT("Set< Name >"), TEXT("SET<NAME>")})
	{
		SCOPED_TRACE(UECompatToUtf8(Text));
		const FParsed Parsed = Parse(Text);
		ASSERT_TRUE(Parsed.bOk) << UECompatToUtf8(Parsed.Error);
		EXPECT_EQ(Parsed.PinType.ContainerType, EZorvekMCPBridgePinContainerType::Set);
		EXPECT_EQ(Parsed.PinType.PinCategory, FZorvekMCPBridgePinCategories::PC_Name);
		EXPECT_TEXT(Parsed.TypeString, TEXT("set<name>"));
	}
}

TEST_F(PinTypeParseTest, MapsHoldTheKeyInThePinAndTheValueInTheValueType)
{
	const FParsed Parsed = Parse(TEXT("map<name, string>"));
	ASSERT_TRUE(Parsed.bOk) << UECompatToUtf8(Parsed.Error);
	EXPECT_EQ(Parsed.PinType.ContainerType, EZorvekMCPBridgePinContainerType::Map);
	EXPECT_EQ(Parsed.PinType.PinCategory, FZorvekMCPBridgePinCategories::PC_Name);
	EXPECT_EQ(Parsed.PinType.PinValueType.TerminalCategory, FZorvekMCPBridgePinCategories::PC_String);
	EXPECT_TEXT(Parsed.TypeString, TEXT("map<name,string>"));

	// Keys and values are parsed like any type text, with the caller's class for objects.
	const FParsed WithObjects = Parse(TEXT("Map< Float , Object_Reference >"), TEXT("/Script/Engine.StaticMesh"));
	ASSERT_TRUE(WithObjects.bOk) << UECompatToUtf8(WithObjects.Error);
	EXPECT_EQ(WithObjects.PinType.PinCategory, FZorvekMCPBridgePinCategories::PC_Real);
	EXPECT_EQ(WithObjects.PinType.PinSubCategory, FZorvekMCPBridgePinCategories::PC_Float);
	EXPECT_EQ(WithObjects.PinType.PinValueType.TerminalCategory, FZorvekMCPBridgePinCategories::PC_Object);
	EXPECT_TEXT(WithObjects.PinType.PinValueType.TerminalSubCategoryObject.PathName, TEXT("/Script/Engine.StaticMesh"));
	EXPECT_TEXT(WithObjects.TypeString, TEXT("map<float,object>"));
}

TEST_F(PinTypeParseTest, MalformedMapsGetTheMapMessage)
{
	for (const TCHAR* Text : {TEXT("map<name>"), TEXT("map<,string>"), TEXT("map<name,>"), TEXT("map<>"), TEXT("  map< , >  "), TEXT("map<map<int,int>>")})
	{
		SCOPED_TRACE(UECompatToUtf8(Text));
		const FParsed Parsed = Parse(Text);
		EXPECT_FALSE(Parsed.bOk);
		EXPECT_TEXT(Parsed.Error, MapMessage(Text));
	}
}

TEST_F(PinTypeParseTest, ContainersInsideContainersAreRefused)
{
	// A map key or value that is itself a container: the whole text is quoted.
	for (const TCHAR* Text : {TEXT("map<name,int[]>"), TEXT("map<map<int,int>,int>"), TEXT("map<set<name>,int>"), TEXT("map<int, array<float> >")})
	{
		SCOPED_TRACE(UECompatToUtf8(Text));
		const FParsed Parsed = Parse(Text);
		EXPECT_FALSE(Parsed.bOk);
		EXPECT_TEXT(Parsed.Error, NestedMessage(Text));
	}
	// Array and set elements are not parsed again, so they fail as unknown words.
	for (const TCHAR* Text : {TEXT("array<array<int>>"), TEXT("set<int>[]"), TEXT("set<array<int>>"), TEXT("array<map<name,int>>")})
	{
		SCOPED_TRACE(UECompatToUtf8(Text));
		const FParsed Parsed = Parse(Text);
		EXPECT_FALSE(Parsed.bOk);
		EXPECT_TEXT(Parsed.Error, UnsupportedMessage(Text));
	}
}

TEST_F(PinTypeParseTest, DeeplyNestedMapsAreRefusedWithoutExhaustingTheStack)
{
	FString Text;
	for (int32 Level = 0; Level < 200000; ++Level)
	{
		Text += TEXT("map<");
	}
	Text += TEXT("int,int>");
	for (int32 Level = 1; Level < 200000; ++Level)
	{
		Text += TEXT(",int>");
	}
	const FParsed Parsed = Parse(Text);
	EXPECT_FALSE(Parsed.bOk);
	EXPECT_TRUE(Parsed.Error.StartsWith(TEXT("Nested Blueprint containers are not supported for variable type 'map<map<"), ESearchCase::CaseSensitive));
}

TEST_F(PinTypeParseTest, AFailedMapKeyOrValueReportsItsOwnFailure)
{
	const FParsed BadKey = Parse(TEXT("map< Double ,int>"));
	EXPECT_FALSE(BadKey.bOk);
	EXPECT_TEXT(BadKey.Error, UnsupportedMessage(TEXT("Double")));

	const FParsed BadValue = Parse(TEXT("map<int,map<name>>"));
	EXPECT_FALSE(BadValue.bOk);
	EXPECT_TEXT(BadValue.Error, MapMessage(TEXT("map<name>")));

	const FParsed UnloadableValue = Parse(TEXT("map<name,class>"), TEXT("/Game/Missing.Missing_C"));
	EXPECT_FALSE(UnloadableValue.bOk);
	EXPECT_TEXT(UnloadableValue.Error, TEXT("Could not load allowable class variable class: /Game/Missing.Missing_C"));
}

TEST_F(PinTypeParseTest, ObjectAndClassTypesLoadTheAllowedClass)
{
	const FParsed Object = Parse(TEXT("object"));
	ASSERT_TRUE(Object.bOk) << UECompatToUtf8(Object.Error);
	EXPECT_TEXT(Object.PinType.PinSubCategoryObject.Name, TEXT("Actor"));

	const FParsed Door = Parse(TEXT("object"), TEXT("/Game/Blueprints/BP_Door.BP_Door_C"));
	ASSERT_TRUE(Door.bOk) << UECompatToUtf8(Door.Error);
	EXPECT_EQ(Door.PinType.PinCategory, FZorvekMCPBridgePinCategories::PC_Object);
	EXPECT_TEXT(Door.PinType.PinSubCategoryObject.Name, TEXT("BP_Door_C"));

	const FParsed Interface = Parse(TEXT("class[]"), TEXT("/Script/Engine.Interactable"));
	ASSERT_TRUE(Interface.bOk) << UECompatToUtf8(Interface.Error);
	EXPECT_EQ(Interface.PinType.PinCategory, FZorvekMCPBridgePinCategories::PC_Class);
	EXPECT_TEXT(Interface.PinType.PinSubCategoryObject.PathName, TEXT("/Script/Engine.Interactable"));
	EXPECT_TEXT(Interface.TypeString, TEXT("class[]"));

	// Only object and class types ask for the class.
	Lookup.RequestedClassPaths.Reset();
	EXPECT_TRUE(Parse(TEXT("vector"), TEXT("/Game/Missing.Missing_C")).bOk);
	EXPECT_TRUE(Parse(TEXT("map<name,int>"), TEXT("/Game/Missing.Missing_C")).bOk);
	EXPECT_TRUE(Lookup.RequestedClassPaths.IsEmpty());
}

TEST_F(PinTypeParseTest, AClassThatDoesNotLoadNamesThePathTried)
{
	const FParsed Missing = Parse(TEXT("Object"), TEXT("/Game/Missing.Missing_C"));
	EXPECT_FALSE(Missing.bOk);
	EXPECT_TEXT(Missing.Error, TEXT("Could not load allowable object variable class: /Game/Missing.Missing_C"));

	const FParsed MissingClass = Parse(TEXT("set<class>"), TEXT("/Game/Missing.Missing_C"));
	EXPECT_FALSE(MissingClass.bOk);
	EXPECT_TEXT(MissingClass.Error, TEXT("Could not load allowable class variable class: /Game/Missing.Missing_C"));

	// A struct or an enum at that path is not a class.
	EXPECT_TEXT(Parse(TEXT("object"), TEXT("/Game/Data/S_Loot.S_Loot")).Error, TEXT("Could not load allowable object variable class: /Game/Data/S_Loot.S_Loot"));
	EXPECT_TEXT(Parse(TEXT("class"), TEXT("/Script/Engine.ECollisionChannel")).Error, TEXT("Could not load allowable class variable class: /Script/Engine.ECollisionChannel"));

	// The path is used as given: blanks are not a missing path.
	EXPECT_TEXT(Parse(TEXT("object"), TEXT(" ")).Error, TEXT("Could not load allowable object variable class:  "));
}

namespace
{
	class ParamSpecArrayTest : public PinTypeParseTest
	{
	protected:
		bool ParseArray(const FString& RequestJson, const FString& FieldName = TEXT("Parameters"))
		{
			const TSharedPtr<FJsonObject> Request = ParseJsonObject(RequestJson);
			EXPECT_TRUE(Request.IsValid()) << UECompatToUtf8(RequestJson);
			Error.Reset();
			return ZorvekMCPBridgePinTypes::ParseParamSpecArray(Lookup, Request, FieldName, Specs, Error);
		}

		TArray<FBlueprintParamSpec> Specs;
		FString Error;
	};
}

TEST_F(ParamSpecArrayTest, DescriptorsAreParsedInOrderWithTheirOwnClass)
{
	ASSERT_TRUE(ParseArray(TEXT(R"({"Inputs": [
		{"Name": "Speed", "Type": "Float"},
		{"Name": "Target", "Type": "object", "ObjectClassPath": "/Game/Blueprints/BP_Door.BP_Door_C"},
		{"Name": "Tags", "Type": "set<name>", "Extra": 1}
	]})"), TEXT("Inputs"))) << UECompatToUtf8(Error);
	ASSERT_EQ(Specs.Num(), 3);
	EXPECT_TEXT(Specs[0].Name.ToString(), TEXT("Speed"));
	EXPECT_TEXT(Specs[0].TypeString, TEXT("float"));
	EXPECT_TEXT(Specs[1].PinType.PinSubCategoryObject.Name, TEXT("BP_Door_C"));
	EXPECT_TEXT(Specs[2].TypeString, TEXT("set<name>"));
}

TEST_F(ParamSpecArrayTest, AMissingArrayIsAnEmptyList)
{
	Specs.Add(FBlueprintParamSpec());
	EXPECT_TRUE(ParseArray(TEXT(R"({"Inputs": [{"Name": "A", "Type": "int"}]})")));
	EXPECT_TRUE(Specs.IsEmpty());
	EXPECT_TRUE(Error.IsEmpty());

	EXPECT_TRUE(ParseArray(TEXT(R"({"Parameters": []})")));
	EXPECT_TRUE(Specs.IsEmpty());

	FString NullError;
	EXPECT_TRUE(ZorvekMCPBridgePinTypes::ParseParamSpecArray(Lookup, nullptr, TEXT("Outputs"), Specs, NullError));
	EXPECT_TRUE(Specs.IsEmpty());
}

TEST_F(ParamSpecArrayTest, BadEntriesFailTheWholeArrayWithTheFieldName)
{
	struct FCase
	{
		const TCHAR* Request;
		const TCHAR* Message;
	};
	const FCase Cases[] =
	{
		{TEXT(R"({"Outputs": ["int"]})"), TEXT("Outputs entries must be objects with Name and Type.")},
		{TEXT(R"({"Outputs": [{"Name": "A", "Type": "int"}, null]})"), TEXT("Outputs entries must be objects with Name and Type.")},
		{TEXT(R"({"Outputs": [[{"Name": "A", "Type": "int"}]]})"), TEXT("Outputs entries must be objects with Name and Type.")},
		{TEXT(R"({"Outputs": [{"Name": "A"}]})"), TEXT("Outputs entries require Name and Type.")},
		{TEXT(R"({"Outputs": [{"Type": "int"}]})"), TEXT("Outputs entries require Name and Type.")},
		{TEXT(R"({"Outputs": [{"Name": "", "Type": "int"}]})"), TEXT("Outputs entries require Name and Type.")},
		{TEXT(R"({"Outputs": [{"Name": "A", "Type": ""}]})"), TEXT("Outputs entries require Name and Type.")},
		{TEXT(R"({"Outputs": [{"Name": "A", "Type": {"Type": "int"}}]})"), TEXT("Outputs entries require Name and Type.")},
		{TEXT(R"({"Outputs": [{"Name": "A", "Type": "int"}, {"Name": "a", "Type": "float"}]})"), TEXT("Duplicate Outputs pin name: a")},
		{TEXT(R"({"Outputs": [{"Name": "A", "Type": "int"}, {"Name": "B", "Type": " double "}]})"), TEXT("Unsupported Blueprint variable type ' double '. Supported types: bool, int, float, string, name, text, vector, rotator, transform, object, class, arrays like float[] or array<float>, sets like set<name>, and maps like map<name,string>.")},
		{TEXT(R"({"Outputs": [{"Name": "A", "Type": "class", "ObjectClassPath": "/Game/Missing.Missing_C"}]})"), TEXT("Could not load allowable class variable class: /Game/Missing.Missing_C")},
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(UECompatToUtf8(Case.Request));
		TArray<FBlueprintParamSpec> Before;
		Before.Add(FBlueprintParamSpec());
		Specs = Before;
		EXPECT_FALSE(ParseArray(Case.Request, TEXT("Outputs")));
		EXPECT_TEXT(Error, Case.Message);
		// Nothing of a failed array reaches the caller.
		EXPECT_EQ(Specs.Num(), 1);
	}
}

TEST_F(ParamSpecArrayTest, NamesAreKeptAsReceived)
{
	ASSERT_TRUE(ParseArray(TEXT(R"({"Parameters": [{"Name": " Padded ", "Type": "int"}, {"Name": "Padded", "Type": "int"}]})"))) << UECompatToUtf8(Error);
	ASSERT_EQ(Specs.Num(), 2);
	EXPECT_TEXT(Specs[0].Name.ToString(), TEXT(" Padded "));
}

namespace
{
	FZorvekMCPBridgePinType MakeType(const FName& Category, const FName& SubCategory = NAME_None, const FZorvekMCPBridgeTypeIdentity& Object = FZorvekMCPBridgeTypeIdentity(),
		EZorvekMCPBridgePinContainerType Container = EZorvekMCPBridgePinContainerType::None)
	{
		FZorvekMCPBridgePinType PinType;
		PinType.PinCategory = Category;
		PinType.PinSubCategory = SubCategory;
		PinType.PinSubCategoryObject = Object;
		PinType.ContainerType = Container;
		return PinType;
	}

	const FZorvekMCPBridgeTypeIdentity ActorClass(TEXT("/Script/Engine.Actor"), TEXT("Actor"));
}

TEST(PinTypeDescribeTest, ReadBackTextsNameTheObjectThePrecisionOrTheCategory)
{
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Real, FZorvekMCPBridgePinCategories::PC_Double)), TEXT("double"));
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Real)), TEXT("real"));
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Exec)), TEXT("exec"));
	// Only reals print their sub-category.
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Object, TEXT("self"))), TEXT("object"));
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Object, NAME_None, ActorClass, EZorvekMCPBridgePinContainerType::Array)), TEXT("array<Actor>"));
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Name, NAME_None, FZorvekMCPBridgeTypeIdentity(), EZorvekMCPBridgePinContainerType::Set)), TEXT("set<name>"));
	// A container value the engine does not know prints as the bare element.
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MakeType(FZorvekMCPBridgePinCategories::PC_Int, NAME_None, FZorvekMCPBridgeTypeIdentity(), (EZorvekMCPBridgePinContainerType)7)), TEXT("int"));
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::GetContainerTypeWord((EZorvekMCPBridgePinContainerType)7), TEXT("unknown"));
}

TEST(PinTypeJsonTest, ALiveDoublePinReadsBackAsDouble)
{
	FZorvekMCPBridgePinSnapshot Pin;
	Pin.PinName = TEXT("Speed");
	Pin.Direction = EZorvekMCPBridgePinDirection::Output;
	Pin.PinType = MakeType(FZorvekMCPBridgePinCategories::PC_Real, FZorvekMCPBridgePinCategories::PC_Double);
	Pin.DefaultValue = TEXT("1.5");

	const TSharedPtr<FJsonObject> Json = ZorvekMCPBridgePinTypes::MakePinJson(Pin);
	EXPECT_TEXTS(KeysOf(Json), Keys({TEXT("name"), TEXT("direction"), TEXT("pin_category"), TEXT("pin_subcategory"), TEXT("pin_subcategory_object"),
		TEXT("container_type"), TEXT("type_string"), TEXT("type"), TEXT("default_value")}));
	EXPECT_TEXT(ToCondensedJson(Json), FString(TEXT(R"({"name":"Speed","direction":"output","pin_category":"real","pin_subcategory":"double","pin_subcategory_object":"","container_type":"none","type_string":"double",)"
		R"("type":{"pin_category":"real","pin_subcategory":"double","pin_subcategory_object":"","display_name":"double","container_type":"none","type_string":"double","is_array":false,"is_set":false,"is_map":false},)"
		R"("default_value":"1.5"})")));
}

TEST(PinTypeJsonTest, AMapTypeCarriesKeyAndValueObjects)
{
	FZorvekMCPBridgePinType MapType = MakeType(FZorvekMCPBridgePinCategories::PC_Name, NAME_None, FZorvekMCPBridgeTypeIdentity(), EZorvekMCPBridgePinContainerType::Map);
	MapType.PinValueType.TerminalCategory = FZorvekMCPBridgePinCategories::PC_Int;

	const TSharedPtr<FJsonObject> Json = ZorvekMCPBridgePinTypes::MakePinTypeJson(MapType);
	EXPECT_TEXT(ToCondensedJson(Json), FString(TEXT(R"({"pin_category":"name","pin_subcategory":"None","pin_subcategory_object":"","display_name":"name","container_type":"map","type_string":"map<name,int>","is_array":false,"is_set":false,"is_map":true,)"
		R"("key_type":{"pin_category":"name","pin_subcategory":"None","pin_subcategory_object":"","display_name":"name"},)"
		R"("value_type":{"pin_category":"int","pin_subcategory":"None","pin_subcategory_object":"","display_name":"int"}})")));

	// A map to objects names the value's class.
	MapType.PinValueType.TerminalCategory = FZorvekMCPBridgePinCategories::PC_Object;
	MapType.PinValueType.TerminalSubCategoryObject = ActorClass;
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::DescribePinType(MapType), TEXT("map<name,Actor>"));
	EXPECT_TEXT(ZorvekMCPBridgePinTypes::MakePinTypeJson(MapType)->GetObjectField(TEXT("value_type"))->GetStringField(TEXT("pin_subcategory_object")), TEXT("/Script/Engine.Actor"));
}

TEST(PinTypeJsonTest, ArraysAndSetsCarryAnElementObject)
{
	const TSharedPtr<FJsonObject> ArrayJson = ZorvekMCPBridgePinTypes::MakePinTypeJson(
		MakeType(FZorvekMCPBridgePinCategories::PC_Object, NAME_None, ActorClass, EZorvekMCPBridgePinContainerType::Array));
	EXPECT_TEXT(KeysOf(ArrayJson).Last(), FString(TEXT("element_type")));
	EXPECT_TRUE(ArrayJson->GetBoolField(TEXT("is_array")));
	EXPECT_TEXT(ArrayJson->GetObjectField(TEXT("element_type"))->GetStringField(TEXT("display_name")), TEXT("Actor"));
	EXPECT_FALSE(ArrayJson->HasField(TEXT("key_type")));

	const TSharedPtr<FJsonObject> SetJson = ZorvekMCPBridgePinTypes::MakePinTypeJson(
		MakeType(FZorvekMCPBridgePinCategories::PC_Name, NAME_None, FZorvekMCPBridgeTypeIdentity(), EZorvekMCPBridgePinContainerType::Set));
	EXPECT_TRUE(SetJson->GetBoolField(TEXT("is_set")));
	EXPECT_TEXT(SetJson->GetStringField(TEXT("container_type")), TEXT("set"));
	EXPECT_TRUE(SetJson->HasField(TEXT("element_type")));

	// A plain type has neither.
	const TSharedPtr<FJsonObject> PlainJson = ZorvekMCPBridgePinTypes::MakePinTypeJson(MakeType(FZorvekMCPBridgePinCategories::PC_Boolean));
	EXPECT_TEXT(KeysOf(PlainJson).Last(), FString(TEXT("is_map")));
}

TEST(PinTypeJsonTest, UserPinsHaveNoDirection)
{
	FZorvekMCPBridgeUserPinInfo UserPin;
	UserPin.PinName = TEXT("Damage");
	UserPin.PinType = MakeType(FZorvekMCPBridgePinCategories::PC_Int);
	UserPin.DesiredPinDirection = EZorvekMCPBridgePinDirection::Output;
	UserPin.PinDefaultValue = TEXT("10");

	const TSharedPtr<FJsonObject> Json = ZorvekMCPBridgePinTypes::MakeUserPinJson(UserPin);
	EXPECT_TEXTS(KeysOf(Json), Keys({TEXT("name"), TEXT("pin_category"), TEXT("pin_subcategory"), TEXT("pin_subcategory_object"),
		TEXT("container_type"), TEXT("type_string"), TEXT("type"), TEXT("default_value")}));
	EXPECT_TEXT(Json->GetStringField(TEXT("default_value")), TEXT("10"));
}

TEST_F(ParamSpecArrayTest, DescriptorsEchoWithTheTypeObjectSecond)
{
	ASSERT_TRUE(ParseArray(TEXT(R"({"Parameters": [{"Name": "Targets", "Type": "array<object>"}, {"Name": "Lookup", "Type": "map<name,vector>"}]})"))) << UECompatToUtf8(Error);
	const TArray<TSharedPtr<FJsonValue>> Echo = ZorvekMCPBridgePinTypes::MakeParamSpecJson(Specs);
	ASSERT_EQ(Echo.Num(), 2);

	const TSharedPtr<FJsonObject>& Targets = Echo[0]->AsObject();
	EXPECT_TEXTS(KeysOf(Targets), Keys({TEXT("name"), TEXT("type"), TEXT("pin_category"), TEXT("pin_subcategory"), TEXT("pin_subcategory_object"),
		TEXT("container_type"), TEXT("type_string")}));
	EXPECT_TEXT(Targets->GetStringField(TEXT("name")), TEXT("Targets"));
	ASSERT_TRUE(Targets->HasTypedField<EJson::Object>(TEXT("type")));
	EXPECT_TEXT(Targets->GetObjectField(TEXT("type"))->GetStringField(TEXT("type_string")), TEXT("array<Actor>"));
	EXPECT_TEXT(Targets->GetStringField(TEXT("pin_subcategory_object")), TEXT("/Script/Engine.Actor"));
	EXPECT_TEXT(Targets->GetStringField(TEXT("container_type")), TEXT("array"));

	const TSharedPtr<FJsonObject>& LookupJson = Echo[1]->AsObject();
	EXPECT_TEXT(LookupJson->GetStringField(TEXT("type_string")), TEXT("map<name,Vector>"));
	EXPECT_TEXT(LookupJson->GetObjectField(TEXT("type"))->GetObjectField(TEXT("value_type"))->GetStringField(TEXT("pin_subcategory_object")), TEXT("/Script/CoreUObject.Vector"));
}
