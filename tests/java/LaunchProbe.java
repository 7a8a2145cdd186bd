import java.io.File;
import java.io.FileOutputStream;
import java.nio.charset.StandardCharsets;

/**
 * Writes down what it was started with, waits and ends as its environment says.
 *
 * <p>The file LAUNCH_PROBE_REPORT gets the class path, the system properties named in LAUNCH_PROBE_PROPERTIES
 * (separated by commas) and the arguments, each UTF-8 and ended by a zero. LAUNCH_PROBE_MILLISECONDS is how long to
 * wait after that, LAUNCH_PROBE_EXIT the exit code. With LAUNCH_PROBE_STUBBORN it takes a minute to stop.
 */
public final class LaunchProbe {
    public static void main(String[] arguments) throws Exception {
        if (System.getenv("LAUNCH_PROBE_STUBBORN") != null) {
            Runtime.getRuntime().addShutdownHook(new Thread(LaunchProbe::sleepLong));
        }
        StringBuilder facts = new StringBuilder(System.getProperty("java.class.path")).append('\0');
        for (String name : setting("LAUNCH_PROBE_PROPERTIES", "").split(",")) {
            if (!name.isEmpty()) facts.append(System.getProperty(name)).append('\0');
        }
        for (String argument : arguments) facts.append(argument).append('\0');

        File report = new File(System.getenv("LAUNCH_PROBE_REPORT"));
        File unfinished = new File(report.getPath() + ".unfinished");
        try (FileOutputStream stream = new FileOutputStream(unfinished)) {
            stream.write(facts.toString().getBytes(StandardCharsets.UTF_8));
        }
        if (!unfinished.renameTo(report)) System.exit(99);

        Thread.sleep(Long.parseLong(setting("LAUNCH_PROBE_MILLISECONDS", "0")));
        System.exit(Integer.parseInt(setting("LAUNCH_PROBE_EXIT", "0")));
    }

    private static void sleepLong() {
        try {
            Thread.sleep(60000);
        } catch (InterruptedException interrupted) {
            Thread.currentThread().interrupt();
        }
    }

    private static String setting(String name, String otherwise) {
        String value = System.getenv(name);
        return value != null ? value : otherwise;
    }

    private LaunchProbe() {}
}
