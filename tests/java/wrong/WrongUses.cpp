// Uses that must not compile. Below each is the text that a person sees, once, in the first line of the one error; for
// a descriptor the name of the function that cannot be called. wrong-uses compares them with what a compiler says.
#include <torvan/Java.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

namespace java = torvan::java;
using java::Local;
using java::Method;
using java::Ref;

struct Rows {
  static constexpr char JavaName[] = "java/sql/ResultSet";
};
struct Collection {
  static constexpr char JavaName[] = "java/util/Collection";
};
struct List {
  static constexpr char JavaName[] = "java/util/List";
  using Super = Collection;
};
struct Builder {
  static constexpr char JavaName[] = "java/lang/StringBuilder";
};
struct Comparator {
  static constexpr char JavaName[] = "java/util/Comparator";
};
struct Money {
  jlong cents;
};
struct Opaque {};

}  // namespace

template <>
struct torvan::java::Convert<Money> : ConvertAs<jlong> {
  static jlong To(const Money& money) { return money.cents; }
  static Money From(jlong cents) { return {cents}; }
};

namespace {

constexpr Method<Rows, std::string(jint)> GetString{"getString"};
constexpr Method<Rows, bool()> Next{"next"};
constexpr Method<Rows, void(jlong)> SetLong{"setLong"};
constexpr Method<Rows, void(bool)> SetBoolean{"setBoolean"};
constexpr Method<Rows, void(char16_t)> SetChar{"setChar"};
constexpr Method<Rows, void(float)> SetFloat{"setFloat"};
constexpr Method<Rows, void(double)> SetDouble{"setDouble"};
constexpr Method<Rows, void(Ref<java::Object>)> SetObject{"setObject"};
constexpr Method<Rows, void(Money)> SetMoney{"setMoney"};
constexpr Method<Rows, void(std::string_view)> SetText{"setText"};
constexpr Method<Collection, bool(Ref<List>)> ContainsAll{"containsAll", "(Ljava/util/Collection;)Z"};
constexpr Method<List, void(Ref<Comparator>)> Sort{"sort"};
constexpr java::StaticMethod<jint(jint, jint)> Max{"java/lang/Math", "max"};
constexpr java::Constructor<Builder(std::string_view)> NewBuilder;
constexpr java::Field<Rows, jint> Count{"count"};
constexpr java::StaticField<jshort> Short{"fixture/Values", "staticShort"};
constexpr java::Overloads<Method<Builder, void(jint)>, Method<Builder, void(std::string_view)>> Append{"append"};
constexpr java::StaticMethod<void(std::vector<jint>)> SetInts{"a/B", "setInts"};
constexpr java::StaticMethod<void(std::vector<Money>)> SetPrices{"a/B", "setPrices"};
constexpr java::StaticMethod<void(std::optional<std::vector<Money>>)> SetSomePrices{"a/B", "setPrices"};
constexpr java::Overloads Two{java::StaticMethod<void(jint, jlong)>{"a/B", "two"},
                              java::StaticMethod<void(jlong, jint)>{"a/B", "two"}};

}  // namespace

void Wrong(const Local<Rows>& rows, const Local<Collection>& collection, const Local<List>& list,
           const Local<Builder>& builder, const std::vector<int*>& pointers, const Opaque& opaque) {
  GetString(rows);
  // torvan::java: too few arguments for this Java method
  GetString(rows, 1, 2);
  // torvan::java: too many arguments for this Java method
  Max(1);
  // torvan::java: too few arguments for this Java method
  Next();
  // torvan::java: the first argument of a method is the object that has it
  Next(5);
  // torvan::java: the first argument of a method or field is the object that has it
  GetString(rows, std::int64_t{1});
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  Max(1.5, 2);
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  SetChar(rows, 5);
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  GetString(rows, u'1');
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  SetFloat(rows, 5);
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  SetDouble(rows, std::int64_t{5});
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  Short.Set(5);
  // torvan::java: this number may not fit the Java type, which is narrower or of another kind; cast it where you know
  // that it does
  GetString(rows, "1");
  // torvan::java: text is given where the Java method takes a number or a boolean
  Max(1, std::string("2"));
  // torvan::java: text is given where the Java method takes a number or a boolean
  GetString(rows, std::uint32_t{1});
  // torvan::java: Java has no integer type for this one (unsigned of 32 or 64 bit, char, wchar_t); cast it to one that
  // Java has
  SetLong(rows, std::uint64_t{1});
  // torvan::java: Java has no integer type for this one (unsigned of 32 or 64 bit, char, wchar_t); cast it to one that
  // Java has
  SetChar(rows, 'x');
  // torvan::java: Java has no integer type for this one (unsigned of 32 or 64 bit, char, wchar_t); cast it to one that
  // Java has
  SetBoolean(rows, 1);
  // torvan::java: a number is given where the Java method takes a boolean
  SetLong(rows, true);
  // torvan::java: a bool or uint8_t, Java's boolean, is given where the Java method takes a number
  SetText(rows, 5);
  // torvan::java: a number or a bool is given where the Java method takes an object
  SetBoolean(rows, list);
  // torvan::java: an object is given where the Java method takes a number or a boolean
  SetLong(rows, nullptr);
  // torvan::java: an object is given where the Java method takes a number or a boolean
  SetMoney(rows, 5);
  // torvan::java: this value is not the host's own type that the declaration has
  SetText(rows, opaque);
  // torvan::java: no conversion of this C++ type to Java; specialise torvan::java::Convert for it
  SetLong(rows, pointers);
  // torvan::java: no conversion of this C++ type to Java; specialise torvan::java::Convert for it
  GetString(list, 1);
  // torvan::java: the method or field belongs to another class than the object; give the object's tag 'using Super =
  // ...;' or use Cast<T>(object)
  Count.Get(builder);
  // torvan::java: the method or field belongs to another class than the object; give the object's tag 'using Super =
  // ...;' or use Cast<T>(object)
  ContainsAll(collection, rows);
  // torvan::java: this reference is of another class than the argument; give its tag 'using Super = ...;' or use
  // Cast<T>(reference)
  NewBuilder(rows);
  // torvan::java: this reference is of another class than the argument; give its tag 'using Super = ...;' or use
  // Cast<T>(reference)
  Count.Get();
  // torvan::java: Get takes the object that has the field, if it is not static
  Count.Set(5);
  // torvan::java: Set takes the object that has the field, if it is not static, and the value
  Append(builder, 1.5);
  // torvan::java: none of these overloads takes these arguments
  Two(1, 2);
  // torvan::java: several of these overloads take these arguments equally well; cast an argument
  java::Call<void>(rows, "f", pointers);
  // torvan::java: no conversion of this C++ type to Java; cast it to one that Java has, or specialise
  // torvan::java::Convert for it
}

void WrongArrays(const Local<java::Array<jint>>& ints, const Local<java::Array<java::String>>& texts,
                 const std::vector<jlong>& longs) {
  SetInts(longs);
  // torvan::java: this vector becomes another Java array than the argument; give one with the declared elements
  SetPrices(longs);
  // torvan::java: this vector becomes another Java array than the argument; give one with the declared elements
  SetInts(1);
  // torvan::java: a number or a bool is given where the Java method takes an object
  SetInts("1");
  // torvan::java: this reference is of another class than the argument; give its tag 'using Super = ...;' or use
  // Cast<T>(reference)
  SetInts(texts);
  // torvan::java: this reference is of another class than the argument; give its tag 'using Super = ...;' or use
  // Cast<T>(reference)
  const java::Ref<java::Array<java::Object>> objects = ints;
  // torvan::java: this reference is of another class than the one needed here; give its tag 'using Super = ...;' or use
  // Cast<T>(reference)
  java::Elements<bool> bits(java::NewArray<bool>(1));
  // torvan::java: the elements of an array are used in place as what they are in Java: jint, jdouble, std::byte,
  // jboolean for a boolean[]
  java::Elements<std::size_t> sizes(nullptr);
  // torvan::java: the elements of an array are used in place as what they are in Java: jint, jdouble, std::byte,
  // jboolean for a boolean[]
  jint* const gone = java::Elements<jint>(ints).data();
  // torvan::java: these elements are given back at the end of the line; name them first
  java::ViewOf(nullptr).Put(0, 1.0L);
  // torvan::java: a buffer has numbers of up to 8 bytes
  java::CriticalElements<java::String> strings(nullptr);
  // torvan::java: the elements of an array are used in place as what they are in Java: jint, jdouble, std::byte,
  // jboolean for a boolean[]
  SetSomePrices(longs);
  // torvan::java: this vector becomes another Java array than the argument; give one with the declared elements
  java::Elements<java::String>(texts).Set(0, 5);
  // torvan::java: a number or a bool is given where the Java method takes an object
}
constexpr java::StaticMethod<void(std::vector<std::uint32_t>)> WrongElements{"a/B", "f"};
// torvan::java: an argument of this declaration has a C++ type that Java has no type for (such as an unsigned of 32
// or 64 bit, char or a pointer); specialise torvan::java::Convert for a type of your own
constexpr java::StaticMethod<std::vector<std::string_view>()> ViewsResult{"a/B", "f"};
// torvan::java: the result of this declaration would refer to what is gone; use std::string, std::u16string or Local<T>
void WrongBuffers(const java::ByteBuffer& buffer, const java::BufferView<const std::byte>& view) {
  GetString(buffer, 1);
  // torvan::java: the method or field belongs to another class than the object; give the object's tag 'using Super =
  // ...;' or use Cast<T>(object)
  view.Put(0, 1);
  // torvan::java: this view only reads
}
void WrongCollections(const Local<Collection>& collection) {
  java::Copy<std::vector<Opaque>>(collection);
  // torvan::java: no object of Java comes out as this C++ type; use a tag, a type of the conversion table that can be a
  // result, or for a map a std::pair of these
}

void WrongFunctions(const Local<Rows>& rows, const Local<List>& list, std::unique_ptr<int> owned) {
  SetText(rows, [] {});
  // torvan::java: a function is given where the Java method takes no object of an interface
  SetObject(rows, [] {});
  // torvan::java: a function is given where the Java method takes no object of an interface
  GetString(rows, [](jint) { return 1; });
  // torvan::java: a function is given where the Java method takes no object of an interface
  java::Call<void>(list, "sort", [](jint, jint) { return 1; });
  // torvan::java: a function is given, but nothing says for which interface: declare the method, or give
  // Implement<T>().On(name, function)
  Sort(list, [](char, char) { return 1; });
  // torvan::java: an argument of this function has a C++ type that does not come from Java; take a number, text, Ref<T>
  // or Local<T>, or specialise torvan::java::Convert
  Sort(list, [owned = std::move(owned)](jint, jint) { return *owned; });
  // torvan::java: Java calls a copy of this function, which cannot be copied; move it into Implement<T>().On(name,
  // std::move(function))
  java::Implement<Comparator>().On("compare", [](const char*, Ref<List>) { return 1; });
  // torvan::java: an argument of this function has a C++ type that does not come from Java; take a number, text, Ref<T>
  // or Local<T>, or specialise torvan::java::Convert
  java::Implement<Comparator>().On("compare", [](std::string&, std::string) { return 1; });
  // torvan::java: this function does not take these arguments or does not return this result
  java::Implement<Comparator>().On("compare", [](jint, jint) { return std::size_t{1}; });
  // torvan::java: no Java type corresponds to the C++ type of this function's result; specialise torvan::java::Convert
  // for a type of your own
  java::Implement<Comparator>().On("compare", [](auto, auto) { return 1; });
  // torvan::java: this is no function, or one of several types: say which, On<R(A...)>(name, function)
  java::Implement<Comparator>().On<jint>("compare", [](jint, jint) { return 1; });
  // torvan::java: the types of a function are given as R(A...), as in On<void(std::string)>
  java::Implement<Comparator>().On<jint(jint, jint)>("compare", [](std::string, jint) { return 1; });
  // torvan::java: this function does not take these arguments or does not return this result
  java::NativeMethod<jint(jint)>("a/B", "f").Bind([](std::string) { return 1; });
  // torvan::java: this function does not take these arguments or does not return this result
  java::NativeMethod<jint(jint), Rows>("f").Bind([](jint) { return 1; });
  // torvan::java: this function does not take these arguments or does not return this result
  java::NativeMethod<jint(jint)>("f");
  // torvan::java: a static native method needs the name of its class and its own
}

constexpr java::NativeMethod<jint(jint)> OtherNative{"a/B", "f", "(J)I"};
// an_argument_type_in_Cpp_does_not_fit_the_descriptor
constexpr Method<Rows, jint(std::size_t)> WrongArgument{"f"};
// torvan::java: an argument of this declaration has a C++ type that Java has no type for (such as an unsigned of 32
// or 64 bit, char or a pointer); specialise torvan::java::Convert for a type of your own
constexpr Method<Rows, Opaque()> WrongResult{"f"};
// torvan::java: the result of this declaration has a C++ type that Java has no type for; specialise
// torvan::java::Convert for a type of your own
constexpr Method<Rows, std::string_view()> ViewResult{"f"};
// torvan::java: the result of this declaration would refer to what is gone; use std::string, std::u16string or Local<T>

constexpr Method<List, jint> NoSignature{"size"};
// torvan::java: a method is declared with its result and arguments, R(A...), as in Method<List, jint(std::string_view)>
constexpr java::StaticMethod<std::string> NoStaticSignature{"a/B", "f"};
// torvan::java: a method is declared with its result and arguments, R(A...), as in Method<List, jint(std::string_view)>
constexpr java::SuperMethod<List, jint(jint) noexcept> NoexceptSignature{"size"};
// torvan::java: a method is declared with its result and arguments, R(A...), as in Method<List, jint(std::string_view)>
constexpr java::Constructor<Builder> NoArguments;
// torvan::java: a constructor is declared with its class and arguments, T(A...), as in Constructor<Builder(jint)>
constexpr Method<Local<List>, jint()> OfAReference{"size"};
constexpr java::Field<Money, jint> OfNoTag{"cents"};
constexpr Method<Rows, Local<jlong>()> NumberReference{"getLong"};
void WrongTags(const Local<Rows>& rows, const Local<List>& list, const Local<Money>& money) {
  OfAReference(list);
  // torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and this type is
  // none
  OfNoTag.Get(money);
  // torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and this type is
  // none
  NumberReference(rows);
  // torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and this type is
  // none
  java::New<Opaque>();
  // torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and this type is
  // none
  java::Cast<std::string>(rows);
  // torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and this type is
  // none
  java::IsInstance<jint>(rows);
  // torvan::java: a Java class is named by a tag, a struct with 'static constexpr char JavaName[]', and this type is
  // none
}

constexpr Method<Rows, jint(jint)> OtherResult{"getLong", "(I)J"};
// the_result_type_in_Cpp_does_not_fit_the_descriptor
constexpr Method<Rows, jint(jint)> OtherArgument{"get", "(J)I"};
// an_argument_type_in_Cpp_does_not_fit_the_descriptor
constexpr Method<Rows, jint(jint)> FewerArguments{"get", "()I"};
// the_descriptor_has_fewer_arguments_than_the_Cpp_signature
constexpr java::StaticMethod<jint(jint)> MoreArguments{"a/B", "get", "(II)I"};
// the_descriptor_has_more_arguments_than_the_Cpp_signature
constexpr Method<Rows, jint(std::string_view)> Dots{"getInt", "(Ljava.lang.String;)I"};
// class_names_in_a_descriptor_have_slashes_and_no_dots
constexpr Method<Rows, jint(std::string_view)> NoSemicolon{"getInt", "(Ljava/lang/String)I"};
// a_class_name_in_the_descriptor_has_no_semicolon_after_it
constexpr Method<Rows, jint()> NoType{"getInt", "()Q"};
// a_type_in_the_descriptor_is_none_of_Z_B_C_S_I_J_F_D_an_array_and_a_class
constexpr Method<Rows, jint()> NoParenthesis{"getInt", "I"};
// the_descriptor_of_a_method_begins_with_a_parenthesis
constexpr java::Constructor<Builder(jint)> More{"(I)VV"};
// something_follows_the_end_of_the_descriptor
constexpr java::Field<Rows, jint> OtherField{"x", "J"};
// the_type_of_the_field_in_Cpp_does_not_fit_the_descriptor
constexpr java::Field<Rows, jint> MoreOfAField{"x", "II"};
// something_follows_the_end_of_the_descriptor
