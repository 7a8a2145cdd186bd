import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.text.BreakIterator;
import java.text.NumberFormat;
import java.util.Comparator;
import java.util.HashMap;
import java.util.Locale;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Word and sentence statistics of a text, by the rules of a language.
 *
 * <p>A native program uses it as an object. As a program it counts the words of the files named; its exit code
 * is 0 when every file could be read, else 1.
 */
public final class TextStatistics {
    private static final Pattern LINK = Pattern.compile("\\bhttps?://\\S+|\\]\\([^)]+\\)");

    private final Locale locale;
    private final StringBuilder text = new StringBuilder();
    private final Map<String, Integer> frequencies = new HashMap<>();
    private int lines;
    private int words;
    private int links;
    private long letters;
    private String lastFailure;

    /** Counts by the rules of the language named by a tag such as "en-GB"; an ill-formed tag is refused. */
    public TextStatistics(String languageTag) {
        locale = new Locale.Builder().setLanguageTag(languageTag).build();
    }

    /** Takes the next line; null is an empty one. */
    public void addLine(String line) {
        lines++;
        String content = line == null ? "" : line;
        for (Matcher matcher = LINK.matcher(content); matcher.find(); ) {
            links++;
        }
        BreakIterator boundaries = BreakIterator.getWordInstance(locale);
        boundaries.setText(content);
        int start = boundaries.first();
        for (int end = boundaries.next(); end != BreakIterator.DONE; start = end, end = boundaries.next()) {
            String word = content.substring(start, end);
            if (Character.isLetter(word.codePointAt(0))) {
                words++;
                letters += word.codePointCount(0, word.length());
                frequencies.merge(word.toLowerCase(locale), 1, Integer::sum);
            }
        }
        text.append(content).append(content.isEmpty() ? "\n\n" : " ");
    }

    public int getLineCount() {
        return lines;
    }

    public int getWordCount() {
        return words;
    }

    public int getLinkCount() {
        return links;
    }

    /** Sentences by the language's rules; an empty line ends one, too. */
    public long getSentenceCount() {
        long sentences = 0;
        for (String paragraph : text.toString().split("\n\n")) {
            BreakIterator boundaries = BreakIterator.getSentenceInstance(locale);
            boundaries.setText(paragraph);
            int start = boundaries.first();
            for (int end = boundaries.next(); end != BreakIterator.DONE; start = end, end = boundaries.next()) {
                if (paragraph.substring(start, end).codePoints().anyMatch(Character::isLetter)) {
                    sentences++;
                }
            }
        }
        return sentences;
    }

    public double getAverageWordLength() {
        return words == 0 ? 0 : (double) letters / words;
    }

    /** The word of at least five letters that occurs most often, with its count; null when there is none. */
    public Map.Entry<String, Integer> getMostFrequentWord() {
        return frequencies.entrySet().stream()
                .filter(entry -> entry.getKey().codePointCount(0, entry.getKey().length()) >= 5)
                .max(Map.Entry.<String, Integer>comparingByValue()
                        .thenComparing(Map.Entry.comparingByKey(Comparator.reverseOrder())))
                .orElse(null);
    }

    /** Writes a number as readers of the language do. */
    public String format(double number) {
        return NumberFormat.getNumberInstance(locale).format(number);
    }

    /** Fails when the text has fewer words; a native caller finds the reason in lastFailure, too. */
    public void requireWords(int minimum) {
        if (words < minimum) {
            lastFailure = "the text has " + words + " words, fewer than " + minimum;
            throw new IllegalStateException(lastFailure);
        }
    }

    public static void main(String[] files) {
        int exitCode = 0;
        for (String file : files) {
            TextStatistics statistics = new TextStatistics("en-GB");
            try {
                Files.readAllLines(Paths.get(file)).forEach(statistics::addLine);
                System.out.println(file + ": " + statistics.format(statistics.getWordCount()) + " words");
            } catch (IOException exception) {
                System.err.println(file + " cannot be read");
                exitCode = 1;
            }
        }
        System.exit(exitCode);
    }
}
