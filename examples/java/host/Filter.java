package host;

/** What the host of java_plugins.cpp asks of a plug-in: its class plugin.Main implements this. */
public interface Filter {
    String name();
    String[] apply(String[] lines);
}
