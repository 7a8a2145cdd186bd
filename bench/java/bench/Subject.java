package bench;

import java.util.Comparator;
import java.util.function.Consumer;
import java.util.function.IntUnaryOperator;

/** Members that cost next to nothing, so that what is measured is the way to them. */
public class Subject {
    public int field = 7;
    private static final String TEXT16 = made(16, 'x');
    private static final String TEXT1024 = made(1024, 'x');
    private static final String WIDE1024 = made(1024, '\u4e2d');

    public Subject() {}
    public Subject(int value) { field = value; }

    private static String made(int length, char unit) {
        StringBuilder text = new StringBuilder();
        for (int i = 0; i < length; i++) text.append(unit);
        return text.toString();
    }

    public static int add(int a, int b) { return a + b; }
    public static int mixed(int a, long b, double c, boolean d, Object e, int f) {
        return a + (int) b + (int) c + (d ? 1 : 0) + (e == null ? 0 : 1) + f;
    }
    public static int fail(int depth) { return depth == 0 ? Integer.parseInt("x") : fail(depth - 1) + 1; }
    public static int size(int[] array) { return array.length; }
    public static int[] same(int[] array) { return array; }

    public int inc(int a) { return a + field; }
    public Object self() { return this; }
    public int length(String text) { return text.length(); }
    public String text16() { return TEXT16; }
    public String text1024() { return TEXT1024; }
    public String wide1024() { return WIDE1024; }

    public static void ints(IntUnaryOperator function, int times) {
        for (int i = 0; i < times; i++) function.applyAsInt(i);
    }
    public static void objects(Consumer<Object> consumer, int times) {
        for (int i = 0; i < times; i++) consumer.accept("x");
    }
    public static void compares(Comparator<Object> order, int times) {
        for (int i = 0; i < times; i++) order.compare("x", "y");
    }

    /** A program that does nothing. */
    public static void main(String[] arguments) {}
}
