import java.io.ByteArrayOutputStream;

/** Writes its arguments, whether its memory has the limit of the page, and its input. */
public final class DrawingProbe {
    public static void main(String[] arguments) throws Exception {
        ByteArrayOutputStream input = new ByteArrayOutputStream();
        for (int next; (next = System.in.read()) >= 0; ) input.write(next);
        boolean isLimited = Runtime.getRuntime().maxMemory() <= 512L << 20;
        System.out.print(String.join(" ", arguments) + " " + isLimited + ": ");
        System.out.write(input.toByteArray());
        System.out.flush();
    }
}
