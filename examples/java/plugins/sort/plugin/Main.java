package plugin;

import java.util.Arrays;

public class Main implements host.Filter {
    @Override public String name() { return "sort"; }
    @Override public String[] apply(String[] lines) {
        String[] sorted = lines.clone();
        Arrays.sort(sorted);
        return sorted;
    }
}
