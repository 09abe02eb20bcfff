// The simulated editor writes and reads property text as the engine's ExportTextItem and
// ImportText do (no default value, port flags 0), quirks included. Each group states engine rules
// from unreal-behaviour-world-assets.md §1.
#include "AssetTestSupport.h"

using namespace ZorvekAssetTests;

namespace
{
	// A holder of one property of each kind, and the parts its references point at: Body is a
	// default subobject of the holder, Extra a plain subobject.
	const TCHAR* const TextFormProject = TEXT(R"json(
		"structs": [
			{"path": "/Script/Test.Base", "properties": [{"name": "BaseCount", "type": "int32"}]},
			{"path": "/Script/Test.Inner", "properties": [{"name": "Weight", "type": "float", "default": "1.0"}, {"name": "Amount", "type": "int32"}]},
			{"path": "/Script/Test.Sample", "super": "/Script/Test.Base", "properties": [
				{"name": "Flag", "type": "bool"}, {"name": "Count", "type": "int32"}, {"name": "Ratio", "type": "float"},
				{"name": "Label", "type": "FString"}, {"name": "Tag", "type": "FName"}, {"name": "Caption", "type": "FText"},
				{"name": "Mode", "type": "enum:/Script/Engine.EBlendMode"}, {"name": "Target", "type": "object:/Script/CoreUObject.Object"},
				{"name": "Items", "type": "array:int32"}, {"name": "Inner", "type": "struct:/Script/Test.Inner"},
				{"name": "Offset", "type": "struct:/Script/CoreUObject.Vector"},
				{"name": "Cache", "type": "float", "flags": ["Transient"]}, {"name": "Old", "type": "int32", "flags": ["CPF_Deprecated"]}]}
		],
		"classes": [
			{"path": "/Script/Test.Part"},
			{"path": "/Script/Test.SpecialPart", "super": "/Script/Test.Part"},
			{"path": "/Script/Test.Holder", "properties": [
				{"name": "Sample", "type": "struct:/Script/Test.Sample"}, {"name": "Samples", "type": "array:struct:/Script/Test.Inner"},
				{"name": "Color", "type": "struct:/Script/CoreUObject.Color"}, {"name": "Size", "type": "struct:/Script/CoreUObject.IntPoint"},
				{"name": "Xform", "type": "struct:/Script/CoreUObject.Transform"}, {"name": "Bounds", "type": "struct:/Script/CoreUObject.Box"},
				{"name": "Id", "type": "struct:/Script/CoreUObject.Guid"},
				{"name": "Words", "type": "array:FString"}, {"name": "Names", "type": "array:FName"}, {"name": "Numbers", "type": "array:int32"},
				{"name": "Ratio", "type": "float"}, {"name": "Price", "type": "double"}, {"name": "Small", "type": "uint8"}, {"name": "Flag", "type": "bool"},
				{"name": "Label", "type": "FString"}, {"name": "Tag", "type": "FName"}, {"name": "Caption", "type": "FText"}, {"name": "Captions", "type": "array:FText"},
				{"name": "Mode", "type": "enum:/Script/Engine.EBlendMode"}, {"name": "State", "type": "enum:/Script/StateTreeModule.EStateTreeStateType"},
				{"name": "Mesh", "type": "object:/Script/Test.Part"}, {"name": "Parts", "type": "array:object:/Script/Test.Part"},
				{"name": "PartClass", "type": "class:/Script/Test.Part"}, {"name": "SoftPart", "type": "softobject:/Script/Test.Part"}]}
		],
		"assets": [
			{"package": "/Game/Holder", "class": "/Script/Test.Holder", "subobjects": [
				{"name": "Body", "class": "/Script/Test.Part", "default_subobject": true},
				{"name": "Extra", "class": "/Script/Test.SpecialPart"}]},
			{"package": "/Game/OtherPart", "class": "/Script/Test.Part"}
		]
	)json");

	class TextFormTest : public ::testing::Test
	{
	protected:
		std::string Export(const TCHAR* PropertyName) const
		{
			FString Text;
			EXPECT_TRUE(Property(PropertyName).ExportText(Text)) << S(PropertyName);
			return S(Text);
		}

		// Through the port, as the tools import: the holder is the owner.
		bool Import(const TCHAR* PropertyName, const FString& Text) const
		{
			return Port->GetReflection().ImportText(Property(PropertyName), Text);
		}

		FZorvekMCPBridgePropertyCursor Property(const TCHAR* PropertyName) const
		{
			return Port->GetReflection().FindProperty(Holder, PropertyName);
		}

		std::string FieldText(const TCHAR* PropertyName, const TCHAR* FieldName) const
		{
			FString Text;
			EXPECT_TRUE(Property(PropertyName).FindStructField(FieldName).ExportText(Text)) << S(FieldName);
			return S(Text);
		}

		FSimulatedValue& Raw(const TCHAR* PropertyName) const
		{
			return *static_cast<FSimulatedValue*>(Property(PropertyName).GetValuePtr());
		}

		TSharedPtr<FSimulatedEditorPort> Port = LoadInlineProject(TextFormProject);
		FZorvekMCPBridgeObjectHandle Holder = FindObject(*Port, TEXT("/Game/Holder.Holder"));
	};
}

TEST_F(TextFormTest, LeavesAlwaysWriteTheirTextEvenAtTheirDefault)
{
	// §1.1/§1.4: the always-writing export gives the default values their text.
	EXPECT_EQ(Export(TEXT("Flag")), "False");
	EXPECT_EQ(Export(TEXT("Small")), "0");
	EXPECT_EQ(Export(TEXT("Ratio")), "0.000000");
	EXPECT_EQ(Export(TEXT("Label")), "");
	EXPECT_EQ(Export(TEXT("Tag")), "None");
	EXPECT_EQ(Export(TEXT("Mode")), "BLEND_Opaque");
	EXPECT_EQ(Export(TEXT("Mesh")), "None");
	EXPECT_EQ(Export(TEXT("SoftPart")), "None");
	// An empty array is an empty text, not "()".
	EXPECT_EQ(Export(TEXT("Numbers")), "");

	// §1.4: floats and doubles with six decimals.
	const std::pair<const TCHAR*, const char*> Floats[] = {{TEXT("1.5"), "1.500000"}, {TEXT("0.1"), "0.100000"}, {TEXT("100000"), "100000.000000"},
		{TEXT("-0.0"), "-0.000000"}, {TEXT("0.0000001"), "0.000000"}};
	for (const auto& Case : Floats)
	{
		ASSERT_TRUE(Import(TEXT("Ratio"), Case.first));
		EXPECT_EQ(Export(TEXT("Ratio")), Case.second) << S(Case.first);
	}
	ASSERT_TRUE(Import(TEXT("Price"), TEXT("1.23456789")));
	EXPECT_EQ(Export(TEXT("Price")), "1.234568");

	// §1.6: enumerator names; a value that is no enumerator is (INVALID).
	ASSERT_TRUE(Import(TEXT("State"), TEXT("Subtree")));
	EXPECT_EQ(Export(TEXT("State")), "Subtree");
	Raw(TEXT("Mode")).Integer = 99;
	EXPECT_EQ(Export(TEXT("Mode")), "(INVALID)");

	// §1.4: strings and names raw at top level, quoted inside containers.
	ASSERT_TRUE(Import(TEXT("Label"), TEXT("say \"hi\"")));
	EXPECT_EQ(Export(TEXT("Label")), "say \"hi\"");
	ASSERT_TRUE(Import(TEXT("Words"), TEXT("(\"say \\\"hi\\\"\",\"back\\\\slash\",\"two\\nlines\",\"\")")));
	EXPECT_EQ(Export(TEXT("Words")), "(\"say \\\"hi\\\"\",\"back\\\\slash\",\"two\\nlines\",\"\")");
	EXPECT_EQ(Raw(TEXT("Words")).Items[2].Text, TEXT("two\nlines"));
	ASSERT_TRUE(Import(TEXT("Names"), TEXT("(Alpha,\"\",None)")));
	EXPECT_EQ(Export(TEXT("Names")), "(\"Alpha\",\"\",\"\")");
	ASSERT_TRUE(Import(TEXT("Numbers"), TEXT("(1,,3)")));
	EXPECT_EQ(Export(TEXT("Numbers")), "(1,0,3)");
}

TEST_F(TextFormTest, ReferencesNameTheClassAndTheOwnersDefaultSubobjectsByName)
{
	// §1.4: Class'Path' at top level, the whole of it quoted inside containers.
	ASSERT_TRUE(Import(TEXT("Mesh"), TEXT("/Game/OtherPart.OtherPart")));
	EXPECT_EQ(Export(TEXT("Mesh")), "/Script/Test.Part'/Game/OtherPart.OtherPart'");
	// A default subobject of the exporting object is written by its name alone, and that name
	// reads back through the owner.
	ASSERT_TRUE(Import(TEXT("Mesh"), TEXT("Body")));
	EXPECT_EQ(Export(TEXT("Mesh")), "Body");
	ASSERT_TRUE(Import(TEXT("Parts"), TEXT("(Body,\"/Script/Test.SpecialPart'/Game/Holder.Holder:Extra'\",/Script/Test.Part'\"/Game/OtherPart.OtherPart\"',None)")));
	EXPECT_EQ(Export(TEXT("Parts")), "(\"Body\",\"/Script/Test.SpecialPart'/Game/Holder.Holder:Extra'\",\"/Script/Test.Part'/Game/OtherPart.OtherPart'\",None)");

	// Class references are objects of the class Class; soft references are the bare path.
	ASSERT_TRUE(Import(TEXT("PartClass"), TEXT("/Script/Test.SpecialPart")));
	EXPECT_EQ(Export(TEXT("PartClass")), "/Script/CoreUObject.Class'/Script/Test.SpecialPart'");
	ASSERT_TRUE(Import(TEXT("SoftPart"), TEXT("/Script/Test.Part'/Game/Unsaved/Missing.Missing'")));
	EXPECT_EQ(Export(TEXT("SoftPart")), "/Game/Unsaved/Missing.Missing");
}

TEST_F(TextFormTest, GenericStructsWriteOnlyWhatDiffersFromZero)
{
	// §1.7/§1.2: super-struct fields first; zero leaves, transient and deprecated fields left
	// out; struct fields always written; an atomic struct whole.
	EXPECT_EQ(Export(TEXT("Sample")), "(Inner=(Weight=1.000000),Offset=(X=0.000000,Y=0.000000,Z=0.000000))");
	ASSERT_TRUE(Import(TEXT("Sample"), TEXT("(Count=3,BaseCount=2,Flag=True,Label=\"x\",Tag=Door,Caption=\"Open\",Mode=BLEND_Masked,Items=(4),Inner=(Weight=0),Old=7,Cache=2.5)")));
	EXPECT_EQ(Export(TEXT("Sample")),
		"(BaseCount=2,Flag=True,Count=3,Label=\"x\",Tag=\"Door\",Caption=\"Open\",Mode=BLEND_Masked,Items=(4),Inner=(),Offset=(X=0.000000,Y=0.000000,Z=0.000000))");
	// Import takes deprecated fields (the import adds PPF_UseDeprecatedProperties) but never
	// transient ones.
	EXPECT_EQ(FieldText(TEXT("Sample"), TEXT("Old")), "7");
	EXPECT_EQ(FieldText(TEXT("Sample"), TEXT("Cache")), "0.000000");

	// §1.4: native and atomic structs write every field: FColor in B,G,R,A order, FIntPoint as
	// integers, FGuid as 32 digits; FTransform is not atomic but its fields are structs.
	ASSERT_TRUE(Import(TEXT("Color"), TEXT("(R=255,A=255)")));
	EXPECT_EQ(Export(TEXT("Color")), "(B=0,G=0,R=255,A=255)");
	EXPECT_EQ(Export(TEXT("Size")), "(X=0,Y=0)");
	EXPECT_EQ(Export(TEXT("Id")), "00000000000000000000000000000000");
	EXPECT_EQ(Export(TEXT("Bounds")), "(Min=(X=0.000000,Y=0.000000,Z=0.000000),Max=(X=0.000000,Y=0.000000,Z=0.000000),IsValid=0)");
	EXPECT_EQ(Export(TEXT("Xform")), "(Rotation=(X=0.000000,Y=0.000000,Z=0.000000,W=1.000000),Translation=(X=0.000000,Y=0.000000,Z=0.000000),Scale3D=(X=1.000000,Y=1.000000,Z=1.000000))");
}

TEST_F(TextFormTest, ArrayElementsCompareWithTheStructsOwnDefault)
{
	// §1.7: inside an array each element is compared with the struct's C++ default (Weight 1),
	// while the same element on its own is compared with zero.
	ASSERT_TRUE(Import(TEXT("Samples"), TEXT("((Weight=1.0,Amount=2),(Weight=0.0),())")));
	EXPECT_EQ(Export(TEXT("Samples")), "((Amount=2),(Weight=0.000000),())");
	FString Element;
	ASSERT_TRUE(Property(TEXT("Samples")).GetArrayElement(0).ExportText(Element));
	EXPECT_EQ(S(Element), "(Weight=1.000000,Amount=2)");
	ASSERT_TRUE(Property(TEXT("Samples")).GetArrayElement(1).ExportText(Element));
	EXPECT_EQ(S(Element), "()");
	// Elements a text leaves unnamed start from the struct's default, not from zero.
	ASSERT_TRUE(Property(TEXT("Samples")).GetArrayElement(2).ExportText(Element));
	EXPECT_EQ(S(Element), "(Weight=1.000000)");
}

TEST_F(TextFormTest, TextsKeepTheirIdentity)
{
	// §1.5: localized, culture-invariant and string-table texts in their macro forms; a text
	// without identity as its bare string, quoted inside containers.
	const std::pair<const TCHAR*, const char*> Forms[] = {
		{TEXT("NSLOCTEXT(\"[6D3A]\", \"Greeting\", \"Hello \\\"you\\\"\")"), "NSLOCTEXT(\"[6D3A]\", \"Greeting\", \"Hello \\\"you\\\"\")"},
		{TEXT("NSLOCTEXT( \"Ns\" ,\"Key\",\"Source\" ) and more"), "NSLOCTEXT(\"Ns\", \"Key\", \"Source\")"},
		{TEXT("LOCTEXT(\"Key\", \"Source\")"), "NSLOCTEXT(\"\", \"Key\", \"Source\")"},
		{TEXT("INVTEXT(\"Forest Loot\")"), "INVTEXT(\"Forest Loot\")"},
		{TEXT("LOCTABLE(\"/Game/UI/ST_Menu.ST_Menu\", \"Play\")"), "LOCTABLE(\"/Game/UI/ST_Menu.ST_Menu\", \"Play\")"},
		{TEXT("Plain words"), "Plain words"},
		// A macro that does not parse is, at top level, just text: the import never fails.
		{TEXT("NSLOCTEXT(\"Ns\", \"Key\""), "NSLOCTEXT(\"Ns\", \"Key\""}};
	for (const auto& Form : Forms)
	{
		ASSERT_TRUE(Import(TEXT("Caption"), Form.first)) << S(Form.first);
		EXPECT_EQ(Export(TEXT("Caption")), Form.second) << S(Form.first);
	}
	ASSERT_TRUE(Import(TEXT("Captions"), TEXT("(\"Plain\",INVTEXT(\"Fixed\"))")));
	EXPECT_EQ(Export(TEXT("Captions")), "(\"Plain\",INVTEXT(\"Fixed\"))");
	// Inside a container a text must be a macro or quoted.
	EXPECT_FALSE(Import(TEXT("Captions"), TEXT("(Plain)")));
}

TEST_F(TextFormTest, ImportIsAsLenientAsTheEnginesAndNoMore)
{
	// §1.3/§1.9: a prefix is read and the rest ignored.
	ASSERT_TRUE(Import(TEXT("Small"), TEXT("12abc")));
	EXPECT_EQ(Export(TEXT("Small")), "12");
	ASSERT_TRUE(Import(TEXT("Small"), TEXT("1.5")));
	EXPECT_EQ(Export(TEXT("Small")), "1");
	ASSERT_TRUE(Import(TEXT("Small"), TEXT("0x1F")));
	EXPECT_EQ(Export(TEXT("Small")), "31");
	ASSERT_TRUE(Import(TEXT("Flag"), TEXT("yes, indeed")));
	EXPECT_EQ(Export(TEXT("Flag")), "True");
	// Floats never fail: garbage is 0, an exponent counts although the reader stops before it.
	ASSERT_TRUE(Import(TEXT("Ratio"), TEXT("abc")));
	EXPECT_EQ(Export(TEXT("Ratio")), "0.000000");
	ASSERT_TRUE(Import(TEXT("Ratio"), TEXT("1e5")));
	EXPECT_EQ(Export(TEXT("Ratio")), "100000.000000");
	// Strings and names take the whole text as it is, quotes and spaces included.
	ASSERT_TRUE(Import(TEXT("Label"), TEXT("\"x\"")));
	EXPECT_EQ(Export(TEXT("Label")), "\"x\"");
	ASSERT_TRUE(Import(TEXT("Tag"), TEXT(" A")));
	EXPECT_EQ(Export(TEXT("Tag")), " A");
	// Enums skip leading white space and take Enum::Name or the value; others do not skip it.
	ASSERT_TRUE(Import(TEXT("State"), TEXT(" EStateTreeStateType::Group")));
	EXPECT_EQ(Export(TEXT("State")), "Group");
	ASSERT_TRUE(Import(TEXT("State"), TEXT("4")));
	EXPECT_EQ(Export(TEXT("State")), "Subtree");
	EXPECT_FALSE(Import(TEXT("Small"), TEXT(" 5")));
	EXPECT_FALSE(Import(TEXT("Flag"), TEXT(" True")));
	EXPECT_FALSE(Import(TEXT("Color"), TEXT(" (R=1)")));
	// Regular enums want the full name.
	EXPECT_FALSE(Import(TEXT("Mode"), TEXT("Masked")));
	EXPECT_FALSE(Import(TEXT("State"), TEXT("Grp")));

	// Object paths that resolve to nothing of the property's class set null and succeed; a class
	// of the wrong meta class fails.
	ASSERT_TRUE(Import(TEXT("Mesh"), TEXT("/Game/OtherPart.OtherPart")));
	ASSERT_TRUE(Import(TEXT("Mesh"), TEXT("/Game/Nowhere/X.X")));
	EXPECT_EQ(Export(TEXT("Mesh")), "None");
	ASSERT_TRUE(Import(TEXT("Mesh"), TEXT("/Game/OtherPart.OtherPart")));
	ASSERT_TRUE(Import(TEXT("Mesh"), TEXT("/Game/Holder.Holder")));
	EXPECT_EQ(Export(TEXT("Mesh")), "None");
	ASSERT_TRUE(Import(TEXT("PartClass"), TEXT("/Script/Test.NoSuchClass")));
	EXPECT_EQ(Export(TEXT("PartClass")), "None");
	ASSERT_TRUE(Import(TEXT("PartClass"), TEXT("/Script/Test.Part")));
	EXPECT_FALSE(Import(TEXT("PartClass"), TEXT("/Script/Test.Holder")));
	EXPECT_EQ(Export(TEXT("PartClass")), "/Script/CoreUObject.Class'/Script/Test.Part'");

	// Arrays: an empty text or one starting with ")" or "," empties them; "()" is empty too.
	for (const TCHAR* Empty : {TEXT(""), TEXT(")"), TEXT(",1"), TEXT("()")})
	{
		ASSERT_TRUE(Import(TEXT("Numbers"), TEXT("(1,2)")));
		ASSERT_TRUE(Import(TEXT("Numbers"), Empty)) << S(Empty);
		EXPECT_EQ(Export(TEXT("Numbers")), "") << S(Empty);
	}
	EXPECT_FALSE(Import(TEXT("Numbers"), TEXT("1,2")));
}

TEST_F(TextFormTest, StructImportSkipsWhatItCannotReadAndStopsOnlyAtBrokenText)
{
	ASSERT_TRUE(Import(TEXT("Color"), TEXT("(B=1,G=2,R=3,A=4)")));
	// §1.7: unknown names, values that do not parse and empty values are skipped; fields not
	// named keep their values; the struct still succeeds.
	ASSERT_TRUE(Import(TEXT("Color"), TEXT("(Nope=5,G=x,R=,A=9) trailing")));
	EXPECT_EQ(Export(TEXT("Color")), "(B=1,G=2,R=3,A=9)");
	// Hard failures: no "(" first, a missing ")" (also after a nested value), a bad quote.
	for (const TCHAR* Broken : {TEXT("B=1"), TEXT("(B=1,G=(2)"), TEXT("(B=1"), TEXT("(B=1,G=\"2)")})
	{
		EXPECT_FALSE(Import(TEXT("Color"), Broken)) << S(Broken);
	}
	// The engine writes as it reads: fields before the break keep their new values, and a failed
	// array keeps the elements read so far.
	EXPECT_FALSE(Import(TEXT("Color"), TEXT("(B=7,G=8")));
	EXPECT_EQ(Export(TEXT("Color")), "(B=7,G=8,R=3,A=9)");
	ASSERT_TRUE(Import(TEXT("Numbers"), TEXT("(1,2,3)")));
	EXPECT_FALSE(Import(TEXT("Numbers"), TEXT("(5,x,6)")));
	EXPECT_EQ(Export(TEXT("Numbers")), "(5,0)");
	// A GUID reads exactly 32 hexadecimal digits; other spellings fall to the generic reader.
	ASSERT_TRUE(Import(TEXT("Id"), TEXT("8C5A3B0E4F2D4E1B9A7C6D5E4F3A2B1Cff")));
	EXPECT_EQ(Export(TEXT("Id")), "8C5A3B0E4F2D4E1B9A7C6D5E4F3A2B1C");
	EXPECT_FALSE(Import(TEXT("Id"), TEXT("8C5A3B0E-4F2D-4E1B-9A7C-6D5E4F3A2B1C")));
	ASSERT_TRUE(Import(TEXT("Id"), TEXT("(A=1,D=-1)")));
	EXPECT_EQ(Export(TEXT("Id")), "000000014F2D4E1B9A7C6D5EFFFFFFFF");
}
