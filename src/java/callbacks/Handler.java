package torvan.java;

import java.lang.reflect.Array;
import java.lang.reflect.GenericArrayType;
import java.lang.reflect.InvocationHandler;
import java.lang.reflect.Method;
import java.lang.reflect.ParameterizedType;
import java.lang.reflect.Proxy;
import java.lang.reflect.Type;
import java.lang.reflect.TypeVariable;
import java.util.Arrays;
import java.util.HashMap;
import java.util.Map;

/**
 * Runs C++ functions as the methods of an interface. Arguments are unpacked and results boxed here, by the JIT, which is
 * many times faster than through JNI. The natives are not static: a handler is not collected, and its functions not
 * dropped, while one of them runs.
 *
 * <p>The library has the bytes of this class. Each copy of the library replaces the zeros by its own number.
 */
final class Handler_0000000000000000 implements InvocationHandler, Runnable {
  // How a function takes its arguments and what it returns.
  private static final byte REFERENCES = 0, REFERENCES_TO_NUMBER = 1, NUMBERS = 2, ANY = 3, ANY_TO_NUMBER = 4;
  private static final int AT_ONCE = 3;

  private final long functions; // the first one's address
  private final long stride; // from each to the next
  private final Class<?> type;
  private final Method[] declared; // of each function
  private final Method[] seen; // the same as the proxy has it: told by identity
  private final byte[] shapes;
  private final char[][] kinds; // the letters of the C++ types: the result, then the arguments
  private final Class<?>[][] tests; // of arguments whose C++ class is another one than Java's
  private boolean owns; // set once the Cleaner has taken it as its action

  /** What all objects of an interface with functions of the same types share. */
  private Handler_0000000000000000(Class<?> type, Method[] declared, String[] kinds, Class<?>[][] tests, long stride) {
    this.functions = 0;
    this.stride = stride;
    this.type = type;
    this.declared = declared;
    this.seen = declared.clone();
    this.tests = tests;
    this.kinds = new char[kinds.length][];
    this.shapes = new byte[kinds.length];
    for (int i = 0; i < kinds.length; i++) {
      this.kinds[i] = kinds[i].toCharArray();
      this.shapes[i] = shape(this.kinds[i]);
    }
  }

  private Handler_0000000000000000(Handler_0000000000000000 plan, long functions) {
    this.functions = functions;
    this.stride = plan.stride;
    this.type = plan.type;
    this.declared = plan.declared;
    this.seen = plan.seen;
    this.shapes = plan.shapes;
    this.kinds = plan.kinds;
    this.tests = plan.tests;
  }

  private static byte shape(char[] kinds) {
    boolean references = true, numbers = true;
    for (int i = 1; i < kinds.length; i++) {
      if (kinds[i] == 'L') numbers = false;
      else references = false;
    }
    final boolean isNumber = kinds[0] != 'L' && kinds[0] != 'V', few = kinds.length - 1 <= AT_ONCE;
    if (few && references) return isNumber ? REFERENCES_TO_NUMBER : REFERENCES;
    if (few && numbers && kinds[0] != 'L') return NUMBERS;
    return isNumber ? ANY_TO_NUMBER : ANY;
  }

  private Object proxy() {
    return Proxy.newProxyInstance(type.getClassLoader(), new Class<?>[] {type}, this);
  }

  /** The Cleaner's action, run by another handler than the one that is gone. */
  @Override
  public void run() {
    if (owns) drop(functions);
  }

  @Override
  public Object invoke(Object proxy, Method method, Object[] a) throws Throwable {
    final Method[] seen = this.seen;
    for (int i = 0; i < seen.length; i++) {
      if (seen[i] == method) return call(i, a);
    }
    return other(proxy, method, a);
  }

  private Object call(int i, Object[] a) {
    if (tests[i] != null) test(i, a);
    final int n = a == null ? 0 : a.length;
    final char[] kind = kinds[i];
    final long function = functions + i * stride;
    switch (shapes[i]) {
      case REFERENCES:
        return references(function, n > 0 ? a[0] : null, n > 1 ? a[1] : null, n > 2 ? a[2] : null);
      case REFERENCES_TO_NUMBER:
        return box(kind[0], toNumber(function, n > 0 ? a[0] : null, n > 1 ? a[1] : null, n > 2 ? a[2] : null));
      case NUMBERS:
        return box(kind[0], numbers(function, n > 0 ? bits(i, 1, a[0]) : 0, n > 1 ? bits(i, 2, a[1]) : 0,
            n > 2 ? bits(i, 3, a[2]) : 0));
      default:
        return callAny(i, function, a);
    }
  }

  private Object callAny(int i, long function, Object[] a) {
    final char[] kind = kinds[i];
    final long[] numbers = new long[a.length];
    for (int j = 0; j < a.length; j++) {
      if (kind[j + 1] != 'L') numbers[j] = bits(i, j + 1, a[j]);
    }
    return shapes[i] == ANY ? any(function, a, numbers) : box(kind[0], anyToNumber(function, a, numbers));
  }

  private NullPointerException isNull(int i, int place) {
    return new NullPointerException("argument " + place + " of " + declared[i] + " is null");
  }

  private long bits(int i, int place, Object o) {
    if (o == null) throw isNull(i, place);
    switch (kinds[i][place]) {
      case 'Z':
        return (Boolean) o ? 1 : 0;
      case 'B':
        return (Byte) o;
      case 'C':
        return (Character) o;
      case 'S':
        return (Short) o;
      case 'I':
        return (Integer) o;
      case 'J':
        return (Long) o;
      case 'F':
        return Float.floatToRawIntBits((Float) o);
      default:
        return Double.doubleToRawLongBits((Double) o);
    }
  }

  private static Object box(char letter, long bits) {
    switch (letter) {
      case 'Z':
        return bits != 0;
      case 'B':
        return (byte) bits;
      case 'C':
        return (char) bits;
      case 'S':
        return (short) bits;
      case 'I':
        return (int) bits;
      case 'J':
        return bits;
      case 'F':
        return Float.intBitsToFloat((int) bits);
      case 'D':
        return Double.longBitsToDouble(bits);
      default:
        return null;
    }
  }

  private void test(int i, Object[] a) {
    for (int j = 0; j < a.length; j++) {
      final Class<?> wanted = tests[i][j];
      if (wanted != null && a[j] != null && !wanted.isInstance(a[j])) {
        throw new ClassCastException("argument " + (j + 1) + " of " + declared[i] + " is a " + a[j].getClass().getName()
            + ", and the C++ function takes a " + wanted.getName());
      }
    }
  }

  /** A method that is called for the first time, or that no function is given for. */
  private Object other(Object proxy, Method method, Object[] a) throws Throwable {
    final Class<?>[] asked = method.getParameterTypes();
    for (int i = 0; i < declared.length; i++) {
      if (declared[i].getName().equals(method.getName()) && Arrays.equals(declared[i].getParameterTypes(), asked)) {
        seen[i] = method;
        return call(i, a);
      }
    }
    if (method.getDeclaringClass() == Object.class) return ofObject(proxy, method, a);
    if (method.isDefault()) {
      final StringBuilder letters = new StringBuilder().append(letter(method.getReturnType()));
      for (final Class<?> c : asked) letters.append(letter(c));
      return inherited(proxy, method, letters.toString(), a);
    }
    final int i = overriding(method, asked);
    if (i < 0) throw new UnsupportedOperationException("no C++ function is given for " + method);
    final Class<?>[] own = declared[i].getParameterTypes();
    for (int j = 0; j < own.length; j++) {
      if (!own[j].isPrimitive()) own[j].cast(a[j]); // as in Java's own bridges
    }
    return call(i, a);
  }

  /**
   * The method of more special types that overrides one of a generic interface; where no generic types are known, the only
   * one that could. Negative where there is none, or several.
   */
  private int overriding(Method method, Class<?>[] asked) {
    final Map<Type, Type> known = new HashMap<>();
    findArguments(type, known);
    final Type[] generic = method.getGenericParameterTypes();
    final Class<?>[] wanted = new Class<?>[generic.length];
    for (int j = 0; j < generic.length; j++) wanted[j] = erased(generic[j], known);
    int only = -1;
    for (int i = 0; i < declared.length; i++) {
      final Class<?>[] own = declared[i].getParameterTypes();
      if (!declared[i].getName().equals(method.getName()) || !isSpecial(own, asked)) continue;
      if (Arrays.equals(own, wanted)) return i;
      only = only == -1 ? i : -2;
    }
    return only;
  }

  /** Adds what the type variables of the interfaces are that this one extends. */
  private static void findArguments(Class<?> type, Map<Type, Type> known) {
    for (final Type each : type.getGenericInterfaces()) {
      Type raw = each;
      if (each instanceof ParameterizedType) {
        raw = ((ParameterizedType) each).getRawType();
        final Type[] arguments = ((ParameterizedType) each).getActualTypeArguments();
        for (int k = 0; k < arguments.length; k++) known.put(((Class<?>) raw).getTypeParameters()[k], arguments[k]);
      }
      findArguments((Class<?>) raw, known);
    }
  }

  private static Class<?> erased(Type t, Map<Type, Type> known) {
    if (t instanceof Class) return (Class<?>) t;
    if (t instanceof ParameterizedType) return erased(((ParameterizedType) t).getRawType(), known);
    if (t instanceof GenericArrayType) {
      return Array.newInstance(erased(((GenericArrayType) t).getGenericComponentType(), known), 0).getClass();
    }
    return erased(known.containsKey(t) ? known.get(t) : ((TypeVariable<?>) t).getBounds()[0], known);
  }

  private static boolean isSpecial(Class<?>[] own, Class<?>[] asked) {
    if (own.length != asked.length) return false;
    for (int j = 0; j < own.length; j++) {
      if (!asked[j].isAssignableFrom(own[j])) return false;
    }
    return true;
  }

  private Object ofObject(Object proxy, Method method, Object[] a) {
    switch (method.getName()) {
      case "equals":
        return proxy == a[0];
      case "hashCode":
        return System.identityHashCode(proxy);
      default:
        return type.getName() + " in C++@" + Integer.toHexString(System.identityHashCode(proxy));
    }
  }

  private static char letter(Class<?> c) {
    if (!c.isPrimitive()) return 'L';
    return c == boolean.class ? 'Z' : c == long.class ? 'J' : Character.toUpperCase(c.getName().charAt(0));
  }

  private native Object references(long function, Object a, Object b, Object c);

  private native long toNumber(long function, Object a, Object b, Object c);

  private native long numbers(long function, long a, long b, long c);

  private native Object any(long function, Object[] a, long[] numbers);

  private native long anyToNumber(long function, Object[] a, long[] numbers);

  private native Object inherited(Object proxy, Method method, String letters, Object[] a);

  private native void drop(long functions);
}
