package plugin;

import java.util.Locale;

public class Main implements host.Filter {
    @Override public String name() { return "shout"; }
    @Override public String[] apply(String[] lines) {
        String[] loud = new String[lines.length];
        for (int i = 0; i < lines.length; i++) loud[i] = lines[i].toUpperCase(Locale.ROOT) + "!";
        return loud;
    }
}
